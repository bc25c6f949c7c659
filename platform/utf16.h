#pragma once

#include <type_traits>

// One code unit of UTF-16: wchar_t where that has 16 bits, char16_t elsewhere, so that lengths, positions and
// layouts of wide text are the same on every platform.
using utf16_t = std::conditional_t<sizeof(wchar_t) == sizeof(char16_t), wchar_t, char16_t>;

namespace platform {

// Picks the spelling of a literal whose units are utf16_t.
[[nodiscard]] constexpr auto pick_utf16_literal([[maybe_unused]] const char16_t* as_char16,
                                                [[maybe_unused]] const wchar_t* as_wide) noexcept {
    if constexpr (std::is_same_v<utf16_t, char16_t>)
        return as_char16;
    else
        return as_wide;
}

} // namespace platform

// A zero-terminated UTF-16 literal of static lifetime: UTF16("text"); a character: UTF16("x")[0].
#define UTF16(text) platform::pick_utf16_literal(u##text, L##text)
