#pragma once

#include "cli/options.h"
#include "cli/result.h"

#include <optional>

// What becomes of a job without a conversion, because its output exists; nothing where it is to be converted.
[[nodiscard]] std::optional<result_t> settle_by_output(const job_t& job, const options_t& options);
