#include "platform/characters.h"

#include <cwctype>

namespace platform {

bool is_space(utf16_t c) noexcept {
    return std::iswspace(c) != 0;
}

utf16_t to_upper(utf16_t c) noexcept {
    return std::towupper(c);
}

utf16_t to_lower(utf16_t c) noexcept {
    return std::towlower(c);
}

} // namespace platform
