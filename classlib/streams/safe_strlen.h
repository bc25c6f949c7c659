#pragma once

// The number of bytes before the terminating zero, as far as an int counts; 0 for a null pointer.
[[nodiscard]] int safe_strlen(const char* text) noexcept;
