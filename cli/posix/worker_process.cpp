#include "cli/posix/worker_process.h"

#include "cli/posix/messages.h"
#include "platform/posix/uninterrupted.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <utility>
#include <vector>

namespace {

[[noreturn]] void throw_not_started(int error_number) {
    throw std::system_error(error_number, std::generic_category(), "cannot start a worker process");
}

// The program's environment with the worker's own settings.
class environment final {
public:
    explicit environment(const worker_settings_t& settings)
        : m_settings{"TMPDIR=" + settings.temporary_folder,
                     "RAW_TO_TIFF_THREADS=" + std::to_string(settings.threads)} {
        for (char** entry = environ; *entry != nullptr; ++entry)
            if (!is_set_here(*entry))
                m_entries.push_back(*entry);
        for (std::string& setting : m_settings)
            m_entries.push_back(setting.data());
        m_entries.push_back(nullptr);
    }

    [[nodiscard]] char* const* inq_entries() const noexcept { return m_entries.data(); }

private:
    static bool is_set_here(std::string_view entry) noexcept {
        return entry.starts_with("TMPDIR=") || entry.starts_with("RAW_TO_TIFF_THREADS=");
    }

    std::array<std::string, 2> m_settings;
    std::vector<char*> m_entries;
};

// What a new process does with the socket before the worker begins.
class spawn_actions final {
public:
    explicit spawn_actions(int socket) {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_addopen(&m_actions, 0, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&m_actions, 1, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_adddup2(&m_actions, socket, worker_socket);
    }
    spawn_actions(const spawn_actions&) = delete;
    spawn_actions& operator=(const spawn_actions&) = delete;
    ~spawn_actions() { ::posix_spawn_file_actions_destroy(&m_actions); }

    [[nodiscard]] const posix_spawn_file_actions_t* inq() const noexcept { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

pid_t spawn(const worker_settings_t& settings, int socket) {
    std::string name = "raw-to-tiff";
    std::string option = worker_option;
    std::string memory = std::to_string(settings.memory_bytes);
    const std::array<char*, 4> arguments = {name.data(), option.data(), memory.data(), nullptr};
    const environment environment(settings);
    const spawn_actions actions(socket);
    pid_t process = 0;
    const int error = ::posix_spawn(&process, "/proc/self/exe", actions.inq(), nullptr, arguments.data(),
                                    environment.inq_entries());
    if (error != 0)
        throw_not_started(error);
    return process;
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

worker_process::worker_process(const worker_settings_t& settings) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw_not_started(errno);
    m_socket = descriptor(ends[0]);
    const descriptor its_end(ends[1]);
    m_process = spawn(settings, its_end.inq());
}

worker_process::worker_process(worker_process&& other) noexcept
    : m_process(std::exchange(other.m_process, 0)), m_socket(std::move(other.m_socket)) {}

worker_process::~worker_process() {
    end();
}

bool worker_process::send(const job_t& job) const {
    return send_message(m_socket.inq(), json_of(job));
}

std::optional<std::string> worker_process::receive() const {
    return receive_message(m_socket.inq());
}

worker_end_t worker_process::end() {
    if (m_process == 0)
        return {};
    ::kill(m_process, SIGKILL);
    int status = 0;
    platform::uninterrupted([&] { return ::waitpid(m_process, &status, 0); });
    m_process = 0;
    m_socket.close();
    return describe_end(status);
}
