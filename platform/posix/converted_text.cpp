#include "platform/posix/converted_text.h"

#include "platform/code_page.h"

#include <cstddef>
#include <span>

namespace platform {

namespace {

template <typename From, typename To>
std::basic_string<To> converted(const From* text, int (*convert)(const From*, std::span<To>) noexcept) {
    const int size = convert(text, {});
    if (size == 0)
        return {};
    std::basic_string<To> result(static_cast<std::size_t>(size), To(0));
    static_cast<void>(convert(text, result));
    result.pop_back();
    return result;
}

} // namespace

std::string utf8_text(const utf16_t* text) {
    return converted(text, &utf16_to_utf8);
}

std::basic_string<utf16_t> utf16_text(const char* text) {
    return converted(text, &utf8_to_utf16);
}

} // namespace platform
