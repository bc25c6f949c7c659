// Preloaded into the program, it makes a worker meet its fate when it opens a file whose name says so:
// "crash", "kill", "hang"; "write", "read", "socket" and "program" are attempts to do what it may not. With
// HANG_AT_FSYNC set, workers hang with a file begun.

#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
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
}
