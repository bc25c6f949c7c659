#pragma once

#include "cli/result.h"

#include <optional>

// Whether there is a file that may be the TIFF, perhaps through a link. Where there is anything else, the
// conversion says what is wrong.
[[nodiscard]] bool has_output(const job_t& job);

// What becomes of a job without a conversion, because its output exists; nothing where it is to be converted.
[[nodiscard]] std::optional<result_t> settle_by_output(const job_t& job);

// What has the name of the TIFF now, if anything. A file that appears or changes later is someone else's
// and stays, unless all are to be overwritten: nothing is expected then.
[[nodiscard]] sdk_open::expected_target_t expected_output(const job_t& job);
