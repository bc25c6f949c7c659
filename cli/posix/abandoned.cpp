#include "cli/posix/abandoned.h"

#include <fcntl.h>
#include <sys/file.h>

sdk_open::file_descriptor take_abandoned(const std::string& path) noexcept {
    sdk_open::file_descriptor file(
        ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.is_open() || ::flock(file.inq(), LOCK_EX | LOCK_NB) != 0)
        return {};
    return file;
}
