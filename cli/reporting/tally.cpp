#include "cli/reporting/tally.h"

void tally::add(const result_t& result) {
    if (result.seconds > 0)
        ++m_timed;
    if (result.outcome == outcome_t::described) {
        ++m_described;
    } else if (result.outcome == outcome_t::converted) {
        ++m_converted;
        m_megapixels += static_cast<double>(result.facts.width) * result.facts.height / 1e6;
    } else if (result.outcome == outcome_t::skipped) {
        ++m_skipped;
    } else {
        ++m_failed;
        m_last_failure = result.job.input + ": " + result.reason;
    }
    m_last_outcome = result.outcome;
    m_has_system_failure = m_has_system_failure || is_system_failure(result.outcome);
}

double tally::inq_seconds() const noexcept {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

double tally::inq_seconds_left() const noexcept {
    if (m_timed == 0)
        return 0;
    return inq_seconds() / static_cast<double>(m_timed) * static_cast<double>(inq_left());
}
