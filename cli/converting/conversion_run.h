#pragma once

#include "cli/options.h"
#include "cli/reporting/reports.h"

#include <vector>

// Converts files and reports each. Stops before the end where the user interrupts it, or the disk is full;
// what was begun is removed then. Throws std::system_error where it cannot go on; the same holds then.
[[nodiscard]] ending_t convert_all(const std::vector<job_t>& jobs, const limits_t& limits, reports& reports);
