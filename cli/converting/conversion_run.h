#pragma once

#include "cli/options.h"
#include "cli/reporting/reports.h"

#include <vector>

// Converts files and reports each. Stops before the end where the user interrupts it, or the disk is full;
// what was begun is removed then, and so is what an earlier run that was killed left in the folders that this
// one writes to. Throws std::system_error where it cannot go on; the same holds then.
[[nodiscard]] ending_t convert_all(const std::vector<job_t>& jobs, const options_t& options,
                                   reports& reports);
