#include "classlib/strings/ZMBString.h"

#include "classlib/strings/ZUString.h"
#include "platform/code_page.h"

#include <cstddef>
#include <memory>
#include <span>

ZMBString::ZMBString(const ZUString& text) {
    const int size = platform::utf16_to_utf8(text, {});
    if (size == 0)
        return;
    const auto n_bytes = static_cast<std::size_t>(size);
    const auto bytes = std::make_unique_for_overwrite<char[]>(n_bytes);
    if (platform::utf16_to_utf8(text, std::span(bytes.get(), n_bytes)) > 0)
        ZString::operator=(bytes.get());
}
