#include "cli/posix/worker_process.h"

#include "cli/posix/messages.h"
#include "platform/posix/uninterrupted.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void throw_not_started(int error_number) {
    throw std::system_error(error_number, std::generic_category(), "cannot start a worker process");
}

// Someone else killed it: a system that is short of memory, in all likelihood.
worker_end_t describe_end(int status) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return {::strsignal(signal), signal == SIGKILL ? outcome_t::system_failed : outcome_t::crashed};
    }
    if (WEXITSTATUS(status) == worker_out_of_memory)
        return {"not enough memory", outcome_t::over_memory};
    return {"exit code " + std::to_string(WEXITSTATUS(status)), outcome_t::crashed};
}

} // namespace

// The program has one thread, so that its copy may do anything; starting it anew would cost as much as
// developing a megapixel.
worker_process::worker_process(const worker_settings_t& settings, const containment& bounds) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw_not_started(errno);
    m_socket = sdk_open::file_descriptor(ends[0]);
    const sdk_open::file_descriptor its_end(ends[1]);
    m_process = ::fork();
    if (m_process == 0)
        become_worker(settings, bounds, its_end.inq());
    if (m_process < 0)
        throw_not_started(errno);
}

worker_process::~worker_process() {
    end();
}

bool worker_process::send(const job_t& job) const {
    return send_message(m_socket.inq(), json_of(job));
}

std::optional<std::string> worker_process::receive() const {
    return receive_message(m_socket.inq());
}

bool worker_process::has_message() const noexcept {
    pollfd news{m_socket.inq(), POLLIN, 0};
    return ::poll(&news, 1, 0) > 0;
}

worker_end_t worker_process::end() {
    if (m_process == 0)
        return {};
    ::kill(m_process, SIGKILL);
    int status = 0;
    platform::uninterrupted([&] { return ::waitpid(m_process, &status, 0); });
    m_process = 0;
    static_cast<void>(m_socket.close());
    return describe_end(status);
}
