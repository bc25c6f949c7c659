#include "platform/unnamed_file.h"

#include "platform/posix/temporary_folder.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

// For file systems that cannot make a file without a name.
int make_and_unlink(const std::string& folder) {
    std::string path = folder + "/raw-to-tiff-XXXXXX";
    const int descriptor = ::mkostemp(path.data(), O_CLOEXEC);
    if (descriptor >= 0)
        ::unlink(path.c_str());
    return descriptor;
}

} // namespace

// The C library's own function for this does not look at TMPDIR.
std::FILE* open_unnamed_file() {
    const std::string folder = temporary_folder();
    int descriptor = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        descriptor = make_and_unlink(folder);
    if (descriptor < 0)
        return nullptr;
    std::FILE* const file = ::fdopen(descriptor, "w+b");
    if (file == nullptr)
        ::close(descriptor);
    return file;
}

} // namespace platform
