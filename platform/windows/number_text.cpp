#include "platform/number_text.h"

#include <cwchar>

namespace platform {

bool scan_double(const utf16_t* text, double& value) {
    return std::swscanf(text, L"%lf", &value) == 1;
}

} // namespace platform
