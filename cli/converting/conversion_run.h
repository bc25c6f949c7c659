#pragma once

#include "cli/options.h"
#include "cli/planning/plan.h"
#include "cli/reporting/reports.h"

// Does a plan's jobs and reports each. Stops before the end where the user interrupts it, or the disk is
// full; what was begun is removed then, and so is what an earlier run that was killed left in the folders of
// the plan's TIFFs and of the report. Throws std::system_error where it cannot go on; the same holds then.
[[nodiscard]] ending_t convert_all(const plan_t& plan, const options_t& options, reports& reports);
