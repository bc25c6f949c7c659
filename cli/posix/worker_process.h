#pragma once

#include "cli/posix/worker.h"
#include "cli/reporting/json_record.h"
#include "sdk/open/system/file_descriptor.h"

#include <optional>
#include <string>
#include <sys/types.h>

// How a worker ended, and what that makes of its job.
struct worker_end_t {
    std::string how; // "Segmentation fault", "exit code 1"
    outcome_t outcome = outcome_t::crashed;
};

// A process that converts one file after another. It is killed at the end of its life.
class worker_process final {
public:
    // Throws std::system_error where the process cannot be started.
    worker_process(const worker_settings_t& settings, const containment& bounds);
    worker_process(const worker_process&) = delete;
    worker_process& operator=(const worker_process&) = delete;
    ~worker_process();

    // False where the process has ended.
    [[nodiscard]] bool send(const job_t& job) const;

    // Waits for its next message; nothing where the process has ended.
    [[nodiscard]] std::optional<std::string> receive() const;

    // Whether the next one is there, or the process has ended.
    [[nodiscard]] bool has_message() const noexcept;

    // Becomes readable when there is a message, or the process has ended.
    [[nodiscard]] int inq_descriptor() const noexcept { return m_socket.inq(); }

    // Kills the process, if need be.
    worker_end_t end();

private:
    pid_t m_process = 0; // 0: it has ended
    sdk_open::file_descriptor m_socket;
};
