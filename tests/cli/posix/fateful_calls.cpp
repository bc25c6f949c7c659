// Preloaded into the program, it makes a worker meet its fate when it opens a file whose name says so:
// "crash", "kill", "hang". With HANG_AT_FSYNC set, workers hang with a file begun.

#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" {

// Only a call that may make a file has a mode.
[[gnu::visibility("default")]] int open(const char* path, int flags, ...) { // NOLINT(cert-dcl50-cpp)
    if (std::strstr(path, "crash.cr2") != nullptr)
        ::raise(SIGSEGV);
    if (std::strstr(path, "kill.cr2") != nullptr)
        ::raise(SIGKILL);
    if (std::strstr(path, "hang.cr2") != nullptr)
        ::pause();
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

[[gnu::visibility("default")]] int fsync(int descriptor) {
    if (std::getenv("HANG_AT_FSYNC") != nullptr)
        ::pause();
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}
}
