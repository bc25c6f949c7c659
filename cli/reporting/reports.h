#pragma once

#include "cli/reporting/result_sink.h"
#include "cli/reporting/tally.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

// Counts the results of a run and hands them to all who want them.
class reports final {
public:
    explicit reports(std::size_t files) : m_tally(files) {}

    void add(std::unique_ptr<result_sink> sink) { m_sinks.push_back(std::move(sink)); }

    void note(std::string_view text);
    void take(const result_t& result);
    void tick();

    // Ends all of them, each once. Where one throws, those that are left can still be abandoned.
    void finish(ending_t ending);

    // Ends the reports that are left of a run that cannot go on, as far as they take it.
    void abandon() noexcept;

    [[nodiscard]] const tally& inq_tally() const noexcept { return m_tally; }

private:
    tally m_tally;
    std::vector<std::unique_ptr<result_sink>> m_sinks;
};
