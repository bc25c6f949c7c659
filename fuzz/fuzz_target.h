#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// What a fuzz target defines: runs one input, and ends the process when something is wrong with the answers.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

inline void require(bool condition, const char* what) {
    if (condition)
        return;
    std::fprintf(stderr, "Wrong: %s\n", what);
    std::abort();
}

// Takes an input apart. Beyond its end there are zeros.
class fuzz_input final {
public:
    fuzz_input(const unsigned char* data, std::size_t size) noexcept
        : m_bytes(static_cast<const char*>(static_cast<const void*>(data)), size) {}
    explicit fuzz_input(std::string_view bytes) noexcept : m_bytes(bytes) {}

    [[nodiscard]] bool is_empty() const noexcept { return m_bytes.empty(); }

    // As many bytes as there are, where there are fewer.
    [[nodiscard]] std::string_view take(std::size_t n = std::string_view::npos) noexcept {
        const std::string_view taken = m_bytes.substr(0, n);
        m_bytes.remove_prefix(taken.size());
        return taken;
    }

    // The same as far as the first zero in them.
    [[nodiscard]] std::string take_text(std::size_t n = std::string_view::npos) {
        return std::string(take(n)).c_str();
    }

    template <std::integral T>
    [[nodiscard]] T take_value() noexcept {
        std::uint64_t value = 0;
        for (const char c : take(sizeof(T)))
            value = value << 8 | static_cast<unsigned char>(c);
        return static_cast<T>(value);
    }

private:
    std::string_view m_bytes;
};
