#include "platform/unnamed_file.h"

namespace platform {

std::FILE* open_unnamed_file() {
    return std::tmpfile();
}

} // namespace platform
