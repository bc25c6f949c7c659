#include "platform/files.h"

#include "platform/posix/native_path.h"
#include "platform/posix/temporary_folder.h"
#include "platform/posix/unused_name.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

int open_flags(std::uint32_t access) noexcept {
    const int mode = (access & access_write) == 0  ? O_RDONLY
                     : (access & access_read) == 0 ? O_WRONLY
                                                   : O_RDWR;
    return mode | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
}

bool is_regular(int descriptor) noexcept {
    struct stat status {};
    const bool is_file = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (!is_file)
        errno = EACCES;
    return is_file;
}

// A write lease is granted only while no other open file refers to the file; closing the descriptor gives it
// back. Where leases are not to be had (another owner's file, some network file systems), an advisory lock at
// least finds the programs that lock what they use.
bool nobody_else_has_it_open(int descriptor) noexcept {
    // Should another process open the file while the lease is held, the kernel signals us. The default signal
    // would end the process; SIGURG is ignored unless somebody asks for it.
    if (::fcntl(descriptor, F_SETSIG, SIGURG) == 0 && ::fcntl(descriptor, F_SETLEASE, F_WRLCK) == 0)
        return true;
    if (errno == EAGAIN || errno == EBUSY)
        return false;
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

} // namespace

entry_kind_t inq_entry_kind(const utf16_t* path) noexcept {
    struct stat status {};
    if (::stat(native_path(path).c_str(), &status) != 0)
        return entry_kind_t::none;
    if (S_ISDIR(status.st_mode))
        return entry_kind_t::folder;
    return S_ISREG(status.st_mode) ? entry_kind_t::file : entry_kind_t::other;
}

bool inq_same_entry(const utf16_t* path, const utf16_t* other) noexcept {
    struct stat status {};
    struct stat other_status {};
    return ::stat(native_path(path).c_str(), &status) == 0 &&
           ::stat(native_path(other).c_str(), &other_status) == 0 && status.st_dev == other_status.st_dev &&
           status.st_ino == other_status.st_ino;
}

bool delete_file(const utf16_t* path) noexcept {
    return ::unlink(native_path(path).c_str()) == 0;
}

bool rename_entry(const utf16_t* path, const utf16_t* target) noexcept {
    return rename_to_unused(native_path(path).c_str(), native_path(target).c_str()) == 0;
}

bool make_folder(const utf16_t* path) noexcept {
    return ::mkdir(native_path(path).c_str(), S_IRWXU | S_IRWXG | S_IRWXO) == 0;
}

bool inq_can_open_exclusively(const utf16_t* path, std::uint32_t access) noexcept {
    const int descriptor = ::open(native_path(path).c_str(), open_flags(access));
    if (descriptor < 0)
        return false;
    const bool exclusive = is_regular(descriptor) && nobody_else_has_it_open(descriptor);
    ::close(descriptor);
    return exclusive;
}

std::basic_string<utf16_t> inq_temporary_folder() {
    auto folder = library_path(temporary_folder());
    if (folder.back() != utf16_t('\\'))
        folder += utf16_t('\\');
    return folder;
}

} // namespace platform
