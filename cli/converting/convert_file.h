#pragma once

#include "cli/result.h"

// Converts one file in this process. One call at a time.
[[nodiscard]] result_t convert_file(const job_t& job);
