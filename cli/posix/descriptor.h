#pragma once

#include <unistd.h>
#include <utility>

// Owns a file descriptor of the system, or none.
class descriptor final {
public:
    descriptor() noexcept = default;
    explicit descriptor(int number) noexcept : m_number(number) {}
    descriptor(descriptor&& other) noexcept : m_number(std::exchange(other.m_number, none)) {}
    descriptor& operator=(descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~descriptor() { close(); }

    void close() noexcept {
        if (is_open())
            ::close(std::exchange(m_number, none));
    }

    [[nodiscard]] bool is_open() const noexcept { return m_number != none; }
    [[nodiscard]] int inq() const noexcept { return m_number; }

private:
    static constexpr int none = -1;
    int m_number = none;
};
