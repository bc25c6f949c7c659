#include "cli/reporting/reports.h"

#include <stdexcept>

void reports::note(std::string_view text) {
    for (const auto& sink : m_sinks)
        sink->note(text);
}

void reports::take(const result_t& result) {
    m_tally.add(result);
    for (const auto& sink : m_sinks)
        sink->take(result, m_tally);
}

void reports::tick() {
    for (const auto& sink : m_sinks)
        sink->tick(m_tally);
}

void reports::finish(ending_t ending) {
    for (const auto& sink : m_sinks)
        sink->finish(ending, m_tally);
}

void reports::abandon() noexcept {
    for (const auto& sink : m_sinks) {
        try {
            sink->finish(ending_t::stopped, m_tally);
        } catch (const std::runtime_error&) {
            // In all likelihood this sink is why the run cannot go on.
        }
    }
}
