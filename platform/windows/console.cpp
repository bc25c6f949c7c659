#include "platform/console.h"

#include <cstdio>
#include <cwchar>

namespace platform {

namespace {

const utf16_t* text_or_empty(const utf16_t* text) noexcept {
    return text != nullptr ? text : UTF16("");
}

} // namespace

// Characters that the runtime's locale cannot show end the text: the locale and the mode of the stream belong
// to the host.

void write_line(const utf16_t* text) {
    static_cast<void>(::_putws(text_or_empty(text)));
}

void write_text(const utf16_t* text) {
    static_cast<void>(std::fputws(text_or_empty(text), stdout));
}

} // namespace platform
