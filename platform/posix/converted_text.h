#pragma once

#include "platform/utf16.h"

#include <string>

namespace platform {

// The UTF-8 and UTF-16 forms of a zero-terminated text, as platform/code_page.h converts it.
[[nodiscard]] std::string utf8_text(const utf16_t* text);
[[nodiscard]] std::basic_string<utf16_t> utf16_text(const char* text);

} // namespace platform
