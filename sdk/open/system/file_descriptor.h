#pragma once

#include "sdk/open/system/system_calls.h"

#include <utility>

namespace sdk_open {

// Owns a file descriptor of the system, or none: of a file, a folder, a socket. The destructor closes without
// a check; whoever writes calls close() first and looks at the answer.
class file_descriptor final {
public:
    file_descriptor() noexcept = default;
    explicit file_descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
    file_descriptor(file_descriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, none)) {}
    file_descriptor& operator=(file_descriptor&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~file_descriptor() {
        if (is_open())
            system_calls::close_file(m_descriptor);
    }

    [[nodiscard]] bool is_open() const noexcept { return m_descriptor != none; }
    [[nodiscard]] int inq() const noexcept { return m_descriptor; }

    // 0, or -1 with errno set.
    [[nodiscard]] int close() noexcept { return system_calls::close_file(std::exchange(m_descriptor, none)); }

private:
    static constexpr int none = -1;
    int m_descriptor = none;
};

} // namespace sdk_open
