#pragma once

#include "platform/utf16.h"

// The C runtime's reading of numbers from text, under its current locale.
namespace platform {

// Reads a floating-point number from the beginning of a zero-terminated text, as the runtime's scanf family
// does with "%lf": leading white space is skipped, what follows the number is ignored. False, and the value
// unchanged, when there is no number.
[[nodiscard]] bool scan_double(const char* text, double& value);
[[nodiscard]] bool scan_double(const utf16_t* text, double& value);

} // namespace platform
