#pragma once

#include "platform/utf16.h"

#include <span>

// Conversion between UTF-16 and UTF-8. Malformed input never fails: each lone surrogate, and each longest
// piece of bytes that begins a sequence without completing it, becomes U+FFFD. How many U+FFFD stand for a
// sequence that is not valid UTF-8 at all (overlong, a surrogate, above U+10FFFF) is up to the system.
namespace platform {

// Writes the UTF-8 form of a zero-terminated text, terminator included, and answers the number of bytes
// written. An empty target asks for the size alone. Answers 0 for a null text, a target that is too small and
// a text whose size does not fit an int. U+00E9 gives C3 A9 00 and the answer 3.
[[nodiscard]] int utf16_to_utf8(const utf16_t* text, std::span<char> target) noexcept;

// The way back, with sizes in UTF-16 units: C3 A9 00 gives U+00E9 and the terminator, and the answer 2.
[[nodiscard]] int utf8_to_utf16(const char* text, std::span<utf16_t> target) noexcept;

} // namespace platform
