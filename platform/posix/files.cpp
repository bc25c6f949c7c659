#include "platform/files.h"

#include "platform/posix/native_path.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

bool is_entry(const native_path& path) noexcept {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

// For file systems whose rename cannot be told to spare an existing target. A hard link never replaces; what
// cannot be linked (a folder) is renamed after a look at the target, which leaves a moment for another
// process.
bool rename_without_flags(const native_path& path, const native_path& target) noexcept {
    if (::link(path.c_str(), target.c_str()) == 0) {
        if (::unlink(path.c_str()) == 0)
            return true;
        const int cause = errno;
        ::unlink(target.c_str());
        errno = cause;
        return false;
    }
    if (errno == EEXIST)
        return false;
    if (is_entry(target)) {
        errno = EEXIST;
        return false;
    }
    return ::rename(path.c_str(), target.c_str()) == 0;
}

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
    const native_path from(path);
    const native_path to(target);
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    return (errno == EINVAL || errno == ENOSYS) && rename_without_flags(from, to);
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
    const char* named = std::getenv("TMPDIR");
    auto folder = library_path(named != nullptr && *named != '\0' ? named : P_tmpdir);
    if (folder.back() != utf16_t('\\'))
        folder += utf16_t('\\');
    return folder;
}

} // namespace platform
