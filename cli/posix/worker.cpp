#include "cli/posix/worker.h"

#include "cli/converting/do_job.h"
#include "cli/posix/messages.h"
#include "cli/reporting/json_record.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr int worker_socket = STDERR_FILENO + 1;

// A worker that held the program's end of another's socket would keep that one waiting for a dead program.
// With the terminal for its standard error, it could read what the user types.
void keep_only(int socket) noexcept {
    const int nothing = ::open("/dev/null", O_RDWR);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(nothing, STDOUT_FILENO);
    if (::isatty(STDERR_FILENO) != 0)
        ::dup2(nothing, STDERR_FILENO);
    ::dup2(socket, worker_socket);
    ::closefrom(worker_socket + 1);
}

void apply(const worker_settings_t& settings) {
    ::setenv("TMPDIR", settings.temporary_folder.c_str(), 1);
    ::setenv("RAW_TO_TIFF_THREADS", std::to_string(settings.threads).c_str(), 1);
    const rlimit memory{settings.memory_bytes, settings.memory_bytes};
    if (settings.memory_bytes > 0)
        ::setrlimit(RLIMIT_AS, &memory);
}

int do_what_comes(const std::string& bounds) {
    if (!send_message(worker_socket, ready_message + bounds))
        return EXIT_FAILURE;
    while (const auto message = receive_message(worker_socket)) {
        const auto job = job_of_json(*message);
        if (!job || !send_message(worker_socket, message_of(do_job(*job))))
            return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace

// Ends without the program's own clean-up, and without what the program has not written yet.
void become_worker(const worker_settings_t& settings, const containment& bounds, int socket) noexcept {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    try {
        keep_only(socket);
        const std::string contained_by = bounds.enter();
        apply(settings);
        ::_exit(do_what_comes(contained_by));
    } catch (const std::bad_alloc&) {
        ::_exit(worker_out_of_memory);
    } catch (...) {
        ::_exit(EXIT_FAILURE);
    }
}
