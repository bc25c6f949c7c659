#pragma once

#include "cli/posix/containment.h"

#include <cstdint>
#include <string>

struct worker_settings_t {
    std::string temporary_folder;
    unsigned threads;
    std::uint64_t memory_bytes; // 0: no limit
};

// What a worker says before the first job, in front of what contains it, and its exit code where a file takes
// more memory than there is.
inline constexpr auto ready_message = "ready: ";
inline constexpr int worker_out_of_memory = 4;

// Makes a process that was just forked a worker. It says that it is ready, and then answers each job that
// comes through the socket with its result, until the program hangs up or is gone.
[[noreturn]] void become_worker(const worker_settings_t& settings, const containment& bounds,
                                int socket) noexcept;
