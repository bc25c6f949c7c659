#pragma once

// The terminal that standard error is.
namespace terminal {

// In columns; 0 where standard error is no terminal, or one that only takes text.
[[nodiscard]] unsigned inq_width() noexcept;

} // namespace terminal
