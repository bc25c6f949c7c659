#pragma once

#include "cli/reporting/result_sink.h"
#include "cli/result.h"

#include <optional>
#include <string>
#include <string_view>

// A file's result as one line of JSON without a line end; names that are not UTF-8 have question marks. The
// same form goes to the user and into logs.
[[nodiscard]] std::string json_of(const result_t& result);

// The form that goes from the workers to the program has the thumbnail too.
[[nodiscard]] std::string message_of(const result_t& result);

// The way back from either; nothing for any other text.
[[nodiscard]] std::optional<result_t> result_of_json(std::string_view line);

[[nodiscard]] std::string json_of(ending_t ending, const tally& sum);

// Whether a text begins like a line of a result or a sum. It may be the beginning of a longer text, and its
// first line may be one that was not written to its end.
[[nodiscard]] bool begins_like_log(std::string_view text) noexcept;

[[nodiscard]] std::string json_of(const job_t& job);
[[nodiscard]] std::optional<job_t> job_of_json(std::string_view text);
