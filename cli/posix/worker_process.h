#pragma once

#include "cli/posix/descriptor.h"
#include "cli/reporting/json_record.h"

#include <cstdint>
#include <string>
#include <sys/types.h>

// How the program starts itself as a worker: raw-to-tiff --worker BYTES, with a socket as this descriptor.
// The worker says that it is ready, and then answers each job with its result.
inline constexpr auto worker_option = "--worker";
inline constexpr int worker_socket = 3;
inline constexpr auto ready_message = "ready";

struct worker_settings_t {
    std::string temporary_folder;
    unsigned threads;
    std::uint64_t memory_bytes; // 0: no limit
};

inline constexpr int worker_out_of_memory = 4; // its exit code

// How a worker ended, and what that makes of its job.
struct worker_end_t {
    std::string how; // "Segmentation fault", "exit code 1"
    outcome_t outcome = outcome_t::crashed;
};

// A process that converts one file after another. It is killed at the end of its life.
class worker_process final {
public:
    // Throws std::system_error where the process cannot be started.
    explicit worker_process(const worker_settings_t& settings);
    worker_process(worker_process&& other) noexcept;
    worker_process& operator=(worker_process&&) = delete;
    ~worker_process();

    // False where the process has ended.
    [[nodiscard]] bool send(const job_t& job) const;

    // Waits for its next message; nothing where the process has ended.
    [[nodiscard]] std::optional<std::string> receive() const;

    // Becomes readable when there is a message, or the process has ended.
    [[nodiscard]] int inq_descriptor() const noexcept { return m_socket.inq(); }

    // Kills the process, if need be.
    worker_end_t end();

private:
    pid_t m_process = 0; // 0: it has ended
    descriptor m_socket;
};
