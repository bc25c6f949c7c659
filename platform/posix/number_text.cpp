#include "platform/number_text.h"

#include <cwchar>
#include <string>
#include <string_view>

namespace platform {

bool scan_double(const utf16_t* text, double& value) {
    const std::basic_string_view<utf16_t> units(text);
    const std::wstring wide(units.begin(), units.end());
    return std::swscanf(wide.c_str(), L"%lf", &value) == 1;
}

} // namespace platform
