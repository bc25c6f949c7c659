#include "cli/reporting/reports.h"

#include <stdexcept>
#include <utility>

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

// The last one first: a page that cannot be written shows in the sums that the others tell.
void reports::finish(ending_t ending) {
    while (!m_sinks.empty()) {
        const std::unique_ptr<result_sink> sink = std::move(m_sinks.back());
        m_sinks.pop_back();
        sink->finish(ending, m_tally);
    }
}

void reports::abandon() noexcept {
    while (!m_sinks.empty()) {
        try {
            finish(ending_t::stopped);
        } catch (const std::runtime_error&) {
            // In all likelihood this sink is why the run cannot go on.
        }
    }
}
