#include "cli/reporting/single_report.h"

#include "cli/reporting/progress.h"

void single_report::note(std::string_view text) {
    if (m_verbosity == verbosity_t::verbose)
        m_screen.write_line(text);
}

void single_report::take(const result_t& result, const tally&) {
    if (!is_done(result.outcome) || m_verbosity == verbosity_t::verbose)
        m_screen.write_line(describe(result));
}

void single_report::finish(ending_t ending, const tally&) {
    if (ending == ending_t::interrupted)
        m_screen.write_line("interrupted");
}
