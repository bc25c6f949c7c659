#include "platform/posix/unused_name.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

// The first name goes; where it does not, the second one goes again.
int keep_second_name(const char* first, const char* second) noexcept {
    if (::unlink(first) == 0)
        return 0;
    const int cause = errno;
    ::unlink(second);
    errno = cause;
    return -1;
}

// Leaves a moment for another process.
int rename_after_a_look(const char* from, const char* to) noexcept {
    struct stat status {};
    if (::lstat(to, &status) == 0)
        errno = EEXIST;
    return errno == ENOENT ? ::rename(from, to) : -1;
}

} // namespace

// Not all file systems can do it in one step. A hard link never replaces anything either; where there are
// none (for a folder), a last look is all that can be had.
int rename_to_unused(const char* from, const char* to) noexcept {
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return -1;
    if (::link(from, to) == 0)
        return keep_second_name(from, to);
    return errno == EEXIST ? -1 : rename_after_a_look(from, to);
}

} // namespace platform
