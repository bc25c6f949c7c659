#include "platform/characters.h"

#include <cwctype>

namespace platform {

namespace {

// A mapping that leaves the range of one UTF-16 unit is no mapping for a text made of such units.
utf16_t mapped(utf16_t from, std::wint_t to) noexcept {
    return to <= 0xFFFF ? static_cast<utf16_t>(to) : from;
}

} // namespace

bool is_space(utf16_t c) noexcept {
    return std::iswspace(static_cast<std::wint_t>(c)) != 0;
}

utf16_t to_upper(utf16_t c) noexcept {
    return mapped(c, std::towupper(static_cast<std::wint_t>(c)));
}

utf16_t to_lower(utf16_t c) noexcept {
    return mapped(c, std::towlower(static_cast<std::wint_t>(c)));
}

} // namespace platform
