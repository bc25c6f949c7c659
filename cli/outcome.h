#pragma once

#include <optional>
#include <string_view>

// What became of one file.
enum class outcome_t {
    converted,
    described,     // as --info asks
    skipped,       // the output is there already
    bad_input,     // no raw file, or a damaged one
    missing,       // no such raw file
    output_exists, // and is not to be replaced
    crashed,       // the worker process ended over it
    timed_out,
    over_memory,   // more than --memory-limit
    system_failed, // rights, a read or write error
    disk_full,
};

// The name in JSON and logs, for example "bad_input"; and the way back.
[[nodiscard]] std::string_view name_of(outcome_t outcome) noexcept;
[[nodiscard]] std::optional<outcome_t> outcome_named(std::string_view name) noexcept;

// 0, 10 or 11, as the library answers.
[[nodiscard]] int code_of(outcome_t outcome) noexcept;

// Converted, now or before, or described.
[[nodiscard]] bool is_done(outcome_t outcome) noexcept;

// The system is to blame, not the file.
[[nodiscard]] bool is_system_failure(outcome_t outcome) noexcept;

// A second attempt at the same file may end better.
[[nodiscard]] bool may_pass(outcome_t outcome) noexcept;
