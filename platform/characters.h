#pragma once

#include "platform/utf16.h"

// The C runtime's character functions, for one byte (taken as 0 to 255) and for one UTF-16 unit. They follow
// the runtime's current locale; in the default locale only ASCII letters have a case.
namespace platform {

[[nodiscard]] bool is_space(char c) noexcept;
[[nodiscard]] bool is_space(utf16_t c) noexcept;

// A letter or a digit.
[[nodiscard]] bool is_alnum(char c) noexcept;

// A control character: a line end, an escape, a zero.
[[nodiscard]] bool is_control(char c) noexcept;

[[nodiscard]] char to_upper(char c) noexcept;
[[nodiscard]] utf16_t to_upper(utf16_t c) noexcept;

[[nodiscard]] char to_lower(char c) noexcept;
[[nodiscard]] utf16_t to_lower(utf16_t c) noexcept;

} // namespace platform
