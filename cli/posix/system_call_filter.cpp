#include "cli/posix/system_call_filter.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <span>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// By what they are for. A call that the processor at hand does not know is passed over.
constexpr int harmless[] = {
    // memory
    SCMP_SYS(brk), SCMP_SYS(madvise), SCMP_SYS(mremap), SCMP_SYS(munmap),
    // pipes, by which a sanitizer learns whether memory can be read
    SCMP_SYS(pipe), SCMP_SYS(pipe2),
    // files
    SCMP_SYS(access), SCMP_SYS(close), SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(flock),
    SCMP_SYS(fstat), SCMP_SYS(fstatfs), SCMP_SYS(fsync), SCMP_SYS(getcwd), SCMP_SYS(getdents64),
    SCMP_SYS(link), SCMP_SYS(linkat), SCMP_SYS(lseek), SCMP_SYS(lstat), SCMP_SYS(mkdir), SCMP_SYS(mkdirat),
    SCMP_SYS(newfstatat), SCMP_SYS(pread64), SCMP_SYS(pwrite64), SCMP_SYS(read), SCMP_SYS(readlink),
    SCMP_SYS(readlinkat), SCMP_SYS(readv), SCMP_SYS(rename), SCMP_SYS(renameat), SCMP_SYS(renameat2),
    SCMP_SYS(stat), SCMP_SYS(statx), SCMP_SYS(unlink), SCMP_SYS(unlinkat), SCMP_SYS(utimensat),
    SCMP_SYS(write), SCMP_SYS(writev),
    // messages from the program
    SCMP_SYS(recvfrom),
    // threads
    SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(futex), SCMP_SYS(rseq), SCMP_SYS(sched_getaffinity),
    SCMP_SYS(sched_yield), SCMP_SYS(set_robust_list),
    // signals
    SCMP_SYS(restart_syscall), SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn),
    SCMP_SYS(sigaltstack),
    // the time, and questions
    SCMP_SYS(clock_getres), SCMP_SYS(clock_gettime), SCMP_SYS(clock_nanosleep), SCMP_SYS(getcpu),
    SCMP_SYS(getegid), SCMP_SYS(geteuid), SCMP_SYS(getgid), SCMP_SYS(getpid), SCMP_SYS(getrandom),
    SCMP_SYS(gettid), SCMP_SYS(gettimeofday), SCMP_SYS(getuid), SCMP_SYS(nanosleep), SCMP_SYS(sysinfo),
    SCMP_SYS(uname)};

// No accident: whoever makes one of them has taken the worker over.
constexpr int hostile[] = {SCMP_SYS(bind),     SCMP_SYS(bpf),
                           SCMP_SYS(connect),  SCMP_SYS(execve),
                           SCMP_SYS(execveat), SCMP_SYS(fork),
                           SCMP_SYS(kill),     SCMP_SYS(process_vm_readv),
                           SCMP_SYS(ptrace),   SCMP_SYS(process_vm_writev),
                           SCMP_SYS(socket),   SCMP_SYS(socketpair),
                           SCMP_SYS(vfork)};

class filter final {
public:
    filter() noexcept : m_rules(::seccomp_init(SCMP_ACT_ERRNO(ENOSYS))) {
        m_is_sound = m_rules != nullptr;
        check(m_is_sound ? ::seccomp_attr_set(m_rules.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS)
                         : -1);
    }

    void add(std::uint32_t action, std::span<const int> calls) noexcept {
        for (const int call : calls)
            add(action, call, {});
    }

    // The action is taken where all conditions hold.
    void add(std::uint32_t action, int call, std::initializer_list<scmp_arg_cmp> conditions) noexcept {
        if (m_is_sound)
            check(::seccomp_rule_add_array(m_rules.get(), action, call,
                                           static_cast<unsigned>(conditions.size()), conditions.begin()));
    }

    [[nodiscard]] bool load() noexcept { return m_is_sound && ::seccomp_load(m_rules.get()) == 0; }

private:
    void check(int answer) noexcept { m_is_sound = m_is_sound && answer == 0; }

    struct releaser {
        void operator()(scmp_filter_ctx rules) const noexcept { ::seccomp_release(rules); }
    };
    std::unique_ptr<void, releaser> m_rules;
    bool m_is_sound = false;
};

constexpr scmp_arg_cmp is_equal(unsigned argument, scmp_datum_t value) noexcept {
    return {argument, SCMP_CMP_EQ, value, 0};
}

constexpr scmp_arg_cmp has_none_of(unsigned argument, scmp_datum_t bits) noexcept {
    return {argument, SCMP_CMP_MASKED_EQ, bits, 0};
}

constexpr scmp_arg_cmp has_all_of(unsigned argument, scmp_datum_t bits) noexcept {
    return {argument, SCMP_CMP_MASKED_EQ, bits, bits};
}

// The other commands of fcntl can have signals sent to any process of the user, and change how those write
// who share standard error.
void add_fcntl(filter& rules) noexcept {
    for (const int command : {F_DUPFD_CLOEXEC, F_GETFD, F_GETFL})
        rules.add(SCMP_ACT_ALLOW, SCMP_SYS(fcntl), {is_equal(1, static_cast<scmp_datum_t>(command))});
}

// To bind a thread to processors, as OpenMP may be told to, takes the thread's number, which could as well be
// that of another process. Nothing is done, but it must not look like a failure, after which OpenMP gives up.
void add_pretended(filter& rules) noexcept {
    constexpr std::uint32_t success = SCMP_ACT_ERRNO(0);
    rules.add(success, SCMP_SYS(sched_setaffinity), {});
}

// What clone3 is asked for, no filter can see: the C library takes clone instead.
void add_conditional(filter& rules) noexcept {
    const auto own_process = static_cast<scmp_datum_t>(::getpid());
    rules.add(SCMP_ACT_ALLOW, SCMP_SYS(clone), {has_all_of(0, CLONE_THREAD)});
    rules.add(SCMP_ACT_KILL_PROCESS, SCMP_SYS(clone), {has_none_of(0, CLONE_THREAD)});
    rules.add(SCMP_ACT_ALLOW, SCMP_SYS(tgkill), {is_equal(0, own_process)});
    rules.add(SCMP_ACT_ALLOW, SCMP_SYS(prlimit64), {is_equal(0, 0)});
    // To the program; any other receiver would have to be named.
    rules.add(SCMP_ACT_ALLOW, SCMP_SYS(sendto), {is_equal(4, 0)});
    for (const int call : {SCMP_SYS(mmap), SCMP_SYS(mprotect)})
        rules.add(SCMP_ACT_ALLOW, call, {has_none_of(2, PROT_EXEC)});
    // Landlock did not notice at first that a file opened for reading can be cut.
    rules.add(SCMP_ACT_ALLOW, SCMP_SYS(open), {has_none_of(1, O_TRUNC)});
    rules.add(SCMP_ACT_ALLOW, SCMP_SYS(openat), {has_none_of(2, O_TRUNC)});
}

} // namespace

bool filter_system_calls() noexcept {
    filter rules;
    rules.add(SCMP_ACT_ALLOW, harmless);
    rules.add(SCMP_ACT_KILL_PROCESS, hostile);
    add_fcntl(rules);
    add_pretended(rules);
    add_conditional(rules);
    return rules.load();
}
