#pragma once

// The terminal that standard error is, and perhaps standard output, too.
namespace terminal {

// In columns; 0 where standard error is no terminal, or one that only takes text.
[[nodiscard]] unsigned inq_width() noexcept;

// Whether standard output is a terminal too, in all likelihood the same one.
[[nodiscard]] bool has_standard_output() noexcept;

} // namespace terminal
