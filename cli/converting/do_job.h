#pragma once

#include "cli/result.h"

// Does a job in this process, and times it. One call at a time.
[[nodiscard]] result_t do_job(const job_t& job);
