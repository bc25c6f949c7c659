#pragma once

#include "cli/options.h"
#include "cli/reporting/reports.h"

#include <optional>
#include <vector>

// Converts files and reports each. Stops before the end where the user interrupts it, or the disk is full;
// what was begun is removed then. Throws std::system_error where it cannot go on; the same holds then.
[[nodiscard]] ending_t convert_all(const std::vector<job_t>& jobs, const limits_t& limits, reports& reports);

// The program starts itself to convert in processes of their own. Answers the exit code where this is such a
// process, nothing where it is the user's.
[[nodiscard]] std::optional<int> run_as_worker(int argc, char** argv);
