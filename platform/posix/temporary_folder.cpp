#include "platform/posix/temporary_folder.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

const char* temporary_folder() noexcept {
    const char* const named = std::getenv("TMPDIR");
    return named != nullptr && *named != '\0' ? named : P_tmpdir;
}

} // namespace platform
