#include "cli/posix/stop_signals.h"

#include <cerrno>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace {

bool is_ignored(int signal) noexcept {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

stop_signals::stop_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        if (!is_ignored(signal))
            sigaddset(&signals, signal);
    m_descriptor = sdk_open::file_descriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!m_descriptor.is_open())
        throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
    ::sigprocmask(SIG_BLOCK, &signals, &m_old);
}

// A signal that still waits has been answered, so it is taken before it can end the process.
stop_signals::~stop_signals() {
    signalfd_siginfo taken{};
    while (::read(m_descriptor.inq(), &taken, sizeof taken) > 0)
        ;
    ::sigprocmask(SIG_SETMASK, &m_old, nullptr);
}
