#include "cli/outcome.h"

#include "conversion/pixrerr.h"

#include <algorithm>
#include <array>

namespace {

struct row_t {
    outcome_t outcome;
    std::string_view name;
};

constexpr std::array rows = {
    row_t{outcome_t::converted, "converted"},     row_t{outcome_t::described, "described"},
    row_t{outcome_t::skipped, "skipped"},         row_t{outcome_t::bad_input, "bad_input"},
    row_t{outcome_t::missing, "missing"},         row_t{outcome_t::output_exists, "output_exists"},
    row_t{outcome_t::crashed, "crashed"},         row_t{outcome_t::timed_out, "timed_out"},
    row_t{outcome_t::over_memory, "over_memory"}, row_t{outcome_t::system_failed, "system_failed"},
    row_t{outcome_t::disk_full, "disk_full"},
};

} // namespace

std::string_view name_of(outcome_t outcome) noexcept {
    const auto* const row = std::ranges::find(rows, outcome, &row_t::outcome);
    return row == rows.end() ? std::string_view() : row->name;
}

std::optional<outcome_t> outcome_named(std::string_view name) noexcept {
    const auto* const row = std::ranges::find(rows, name, &row_t::name);
    return row == rows.end() ? std::nullopt : std::optional(row->outcome);
}

int code_of(outcome_t outcome) noexcept {
    if (is_done(outcome))
        return pixrerr_ok;
    return outcome == outcome_t::missing ? pixrerr_missing_file : pixrerr_failed;
}

bool is_done(outcome_t outcome) noexcept {
    return outcome == outcome_t::converted || outcome == outcome_t::described ||
           outcome == outcome_t::skipped;
}

bool is_system_failure(outcome_t outcome) noexcept {
    return outcome == outcome_t::system_failed || outcome == outcome_t::disk_full;
}

bool may_pass(outcome_t outcome) noexcept {
    return !is_done(outcome) && outcome != outcome_t::bad_input && outcome != outcome_t::crashed;
}
