// Preloaded into the program, it makes a worker meet its fate when it opens a file whose name says so: it
// crashes or hangs, attempts what it may not do, or sees someone else's files appear or touched.
// With HANG_AT_FSYNC set, workers hang with a file begun; with NO_NOREPLACE and NO_LINKS, the file system
// lacks these.

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <sched.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr pid_t another_process = 1;

[[noreturn]] void hang() {
    while (true)
        ::sleep(1);
}

int open_file(const char* path, int flags, mode_t mode = 0666) {
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

// The answer to the call cannot tell; with a single processor nothing can.
int bind_to_a_processor() {
    cpu_set_t before{};
    cpu_set_t after{};
    cpu_set_t first{};
    CPU_SET(0, &first);
    ::sched_getaffinity(0, sizeof before, &before);
    ::sched_setaffinity(0, sizeof first, &first);
    ::sched_getaffinity(0, sizeof after, &after);
    if (!CPU_EQUAL(&before, &after))
        return 0;
    errno = EPERM;
    return -1;
}

int send_to_a_stranger() {
    const sockaddr stranger{AF_UNIX, "stranger"};
    return static_cast<int>(::sendto(STDERR_FILENO + 1, "", 1, 0, &stranger, sizeof stranger));
}

// Each answers as a system call does.
constexpr struct {
    const char* name;
    int (*meet)();
} fates[] = {
    {"crash.cr2", [] { return ::raise(SIGSEGV); }},
    {"kill.cr2", [] { return ::raise(SIGKILL); }},
    {"hang.cr2", []() -> int { hang(); }},
    {"write.cr2", [] { return open_file("elsewhere", O_WRONLY | O_CREAT); }},
    {"read.cr2", [] { return open_file("/etc/passwd", O_RDONLY); }},
    {"socket.cr2", [] { return ::socket(AF_INET, SOCK_STREAM, 0); }},
    {"program.cr2", [] { return ::execl("/bin/touch", "touch", "elsewhere", nullptr); }},
    {"signal.cr2", [] { return ::kill(another_process, 0); }},
    {"owner.cr2", [] { return ::fcntl(STDIN_FILENO, F_SETOWN, another_process); }},
    {"flags.cr2", [] { return ::fcntl(STDERR_FILENO, F_SETFL, O_ASYNC); }},
    {"limit.cr2", [] { return ::prlimit(another_process, RLIMIT_NOFILE, nullptr, nullptr); }},
    {"cut.cr2", [] { return ::ftruncate(STDERR_FILENO, 0); }},
    {"speak.cr2", [] { return ::write(STDERR_FILENO, "spoken", 6) < 0 ? -1 : STDIN_FILENO; }},
    {"bind.cr2", bind_to_a_processor},
    {"send.cr2", send_to_a_stranger},
};

void touch(int descriptor) {
    ::futimens(descriptor, nullptr);
    ::close(descriptor);
}

void let_files_appear() {
    for (const char* const file : {"out/a appear.tif", "out/b.tif"})
        touch(open_file(file, O_WRONLY | O_CREAT));
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
    for (const auto& [name, meet] : fates)
        if (std::strstr(path, name) != nullptr)
            return meet();
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
