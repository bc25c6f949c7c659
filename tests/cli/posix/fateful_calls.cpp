// Preloaded into the program, it makes a worker meet its fate when it opens a file whose name says so:
// "crash", "kill", "hang"; "write", "read", "socket" and "program" are attempts to do what it may not;
// "appear" lets someone else's files appear. With HANG_AT_FSYNC set, workers hang with a file begun; with
// NO_NOREPLACE and NO_LINKS, the file system lacks these.

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

[[noreturn]] void hang() {
    while (true)
        ::sleep(1);
}

int open_file(const char* path, int flags, mode_t mode = 0666) {
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

void let_files_appear() {
    for (const char* const file : {"out/a appear.tif", "out/b.tif"})
        ::close(open_file(file, O_WRONLY | O_CREAT));
}

// Makes a call that gives a file a name, unless the environment says that the file system cannot.
template <typename... Arguments>
int give_name(const char* lack, long number, Arguments... arguments) {
    if (std::getenv(lack) == nullptr)
        return static_cast<int>(::syscall(number, arguments...));
    errno = EINVAL;
    return -1;
}

} // namespace

extern "C" {

// Only a call that may make a file has a mode.
[[gnu::visibility("default")]] int open(const char* path, int flags, ...) { // NOLINT(cert-dcl50-cpp)
    if (std::strstr(path, "crash.cr2") != nullptr)
        ::raise(SIGSEGV);
    if (std::strstr(path, "kill.cr2") != nullptr)
        ::raise(SIGKILL);
    if (std::strstr(path, "hang.cr2") != nullptr)
        hang();
    if (std::strstr(path, "write.cr2") != nullptr)
        return open_file("elsewhere", O_WRONLY | O_CREAT);
    if (std::strstr(path, "read.cr2") != nullptr)
        return open_file("/etc/passwd", O_RDONLY);
    if (std::strstr(path, "socket.cr2") != nullptr)
        return ::socket(AF_INET, SOCK_STREAM, 0);
    if (std::strstr(path, "program.cr2") != nullptr)
        return ::execl("/bin/touch", "touch", "elsewhere", nullptr);
    if (std::strstr(path, "appear.cr2") != nullptr)
        let_files_appear();
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return open_file(path, flags, mode);
}

[[gnu::visibility("default")]] int fsync(int descriptor) {
    if (std::getenv("HANG_AT_FSYNC") != nullptr)
        hang();
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

[[gnu::visibility("default")]] int renameat2(int old_folder, const char* old_name, int new_folder,
                                             const char* new_name, unsigned flags) noexcept {
    return give_name("NO_NOREPLACE", SYS_renameat2, old_folder, old_name, new_folder, new_name, flags);
}

[[gnu::visibility("default")]] int link(const char* old_name, const char* new_name) noexcept {
    return give_name("NO_LINKS", SYS_linkat, AT_FDCWD, old_name, AT_FDCWD, new_name, 0);
}
}
