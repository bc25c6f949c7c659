#include "platform/number_text.h"

#include <cstdio>

namespace platform {

bool scan_double(const char* text, double& value) {
    return std::sscanf(text, "%lf", &value) == 1;
}

} // namespace platform
