#pragma once

#include "cli/result.h"

#include <optional>

// Whether there is a file that may be the TIFF, maybe behind a link. Where there is anything else, the
// conversion says what is wrong.
[[nodiscard]] bool has_output(const job_t& job);

// What becomes of a job without a conversion, because its output exists; nothing where it is to be converted.
[[nodiscard]] std::optional<result_t> settle_by_output(const job_t& job);

// Whether the conversion may put its TIFF in the place of the one that is there now. Where there is none, one
// that appears later is someone else's and stays, unless all are to be overwritten.
[[nodiscard]] sdk_open::replacing_t may_replace_output(const job_t& job);
