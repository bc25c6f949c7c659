#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Text that stays on one line and steers no terminal, whatever the names in it hold: control characters, and
// bytes that are not UTF-8, become question marks.
[[nodiscard]] std::string one_line(std::string_view text);

// The first characters of a line of UTF-8 text that fit into this many columns.
[[nodiscard]] std::string_view cut_to_columns(std::string_view text, std::size_t columns) noexcept;
