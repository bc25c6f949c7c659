#include "platform/unnamed_file.h"

#include <cstdlib>
#include <string>
#include <unistd.h>

namespace platform {

// The C library's own does not look at TMPDIR.
std::FILE* open_unnamed_file() {
    const char* const named = std::getenv("TMPDIR");
    std::string path = named != nullptr && *named != '\0' ? named : P_tmpdir;
    path += "/raw-to-tiff-XXXXXX";
    const int descriptor = ::mkstemp(path.data());
    if (descriptor < 0)
        return nullptr;
    ::unlink(path.c_str());
    std::FILE* const file = ::fdopen(descriptor, "w+b");
    if (file == nullptr)
        ::close(descriptor);
    return file;
}

} // namespace platform
