#include "cli/converting/conversion_run.h"

#include "cli/converting/convert_file.h"

#include <chrono>

// One file after another in the user's process. The limits have no meaning here.
ending_t convert_all(const std::vector<job_t>& jobs, const limits_t&, reports& reports) {
    for (const job_t& job : jobs) {
        const auto start = std::chrono::steady_clock::now();
        result_t result = convert_file(job);
        result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        reports.take(result);
        reports.tick();
        if (result.outcome == outcome_t::disk_full)
            return ending_t::stopped;
    }
    return ending_t::complete;
}
