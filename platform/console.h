#pragma once

#include "platform/utf16.h"

// Wide text on standard output. A null text is the empty text; failures are not reported.
namespace platform {

// Writes the text and one line end.
void write_line(const utf16_t* text);

// Writes the text as it is.
void write_text(const utf16_t* text);

} // namespace platform
