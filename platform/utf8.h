#pragma once

#include <optional>
#include <string_view>

namespace platform {

// Takes the first code point off a UTF-8 text that is not empty. Where there is none, takes the longest piece
// that begins a sequence without completing it, or else one byte, and answers nothing.
[[nodiscard]] std::optional<char32_t> take_code_point(std::string_view& text) noexcept;

} // namespace platform
