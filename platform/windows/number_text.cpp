#include "platform/number_text.h"

#include <cstdio>
#include <cwchar>

namespace platform {

bool scan_double(const char* text, double& value) {
    return std::sscanf(text, "%lf", &value) == 1;
}

bool scan_double(const utf16_t* text, double& value) {
    return std::swscanf(text, L"%lf", &value) == 1;
}

} // namespace platform
