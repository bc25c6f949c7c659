#include "cli/reporting/text_report.h"

#include "cli/reporting/progress.h"

namespace {

using namespace std::chrono_literals;

constexpr auto time_between_statuses = 100ms;
constexpr auto time_between_lines = 30s;

} // namespace

void text_report::note(std::string_view text) {
    if (m_verbosity == verbosity_t::verbose)
        m_screen.write_line(text);
}

void text_report::take(const result_t& result, const tally&) {
    if (!is_done(result.outcome))
        m_screen.write_failure(describe(result));
    else if (m_verbosity == verbosity_t::verbose)
        m_screen.write_line(describe(result));
}

void text_report::tick(const tally& so_far) {
    const auto now = std::chrono::steady_clock::now();
    if (m_verbosity == verbosity_t::quiet ||
        now - m_last_progress < (m_has_bar ? time_between_statuses : time_between_lines))
        return;
    m_last_progress = now;
    if (m_has_bar)
        m_screen.show_status(progress_bar(so_far, m_screen));
    else
        m_screen.write_line(describe_progress(so_far));
}

void text_report::finish(ending_t ending, const tally& sum) {
    m_screen.clear_status();
    if (ending != ending_t::complete || m_verbosity != verbosity_t::quiet)
        m_screen.write_line(describe_sum(ending, sum));
}
