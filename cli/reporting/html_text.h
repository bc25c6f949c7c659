#pragma once

#include <string>
#include <string_view>

// Any text, on one line, as text of an HTML page or between the quotation marks of an attribute.
[[nodiscard]] std::string html_text(std::string_view text);
