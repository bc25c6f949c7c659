#include "platform/code_page.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <windows.h>

namespace platform {

namespace {

constexpr int whole_text = -1; // with its terminator

// The size of a target as the system counts it; it never fills more.
template <typename Unit>
int size_of(std::span<Unit> target) noexcept {
    constexpr std::size_t max_size = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(target.size(), max_size));
}

} // namespace

int utf16_to_utf8(const utf16_t* text, std::span<char> target) noexcept {
    return ::WideCharToMultiByte(CP_UTF8, 0, text, whole_text, target.data(), size_of(target), nullptr,
                                 nullptr);
}

int utf8_to_utf16(const char* text, std::span<utf16_t> target) noexcept {
    return ::MultiByteToWideChar(CP_UTF8, 0, text, whole_text, target.data(), size_of(target));
}

} // namespace platform
