#include "cli/converting/conversion_run.h"
#include "cli/converting/do_job.h"
#include "cli/posix/messages.h"
#include "cli/posix/worker_process.h"
#include "cli/reporting/json_record.h"

#include <charconv>
#include <csignal>
#include <new>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace {

void limit_memory(std::string_view bytes) noexcept {
    rlim_t limit = 0;
    std::from_chars(bytes.data(), bytes.data() + bytes.size(), limit);
    const rlimit both{limit, limit};
    if (limit > 0)
        ::setrlimit(RLIMIT_AS, &both);
}

// Until the program hangs up, which it also does when it is killed.
int do_what_comes() {
    if (!send_message(worker_socket, ready_message))
        return 1;
    while (const auto message = receive_message(worker_socket)) {
        const auto job = job_of_json(*message);
        if (!job || !send_message(worker_socket, message_of(do_job(*job))))
            return 1;
    }
    return 0;
}

} // namespace

std::optional<int> run_as_worker(int argc, char** argv) {
    if (argc != 3 || std::string_view(argv[1]) != worker_option)
        return {};
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit_memory(argv[2]);
    try {
        return do_what_comes();
    } catch (const std::bad_alloc&) {
        return worker_out_of_memory;
    }
}
