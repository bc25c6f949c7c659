#pragma once

#include "cli/result.h"

// Finds out what is known of one raw file, without a look at its pixels. What is no raw picture fails as it
// does in a conversion. One call at a time.
[[nodiscard]] result_t describe_file(const job_t& job);
