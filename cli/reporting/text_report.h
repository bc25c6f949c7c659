#pragma once

#include "cli/options.h"
#include "cli/reporting/result_sink.h"
#include "cli/reporting/screen.h"

#include <chrono>

// What a person sees of many files: a line for each failure, with -v for each file, the progress and the sum.
// On a terminal the progress is a bar that goes on; elsewhere a line now and then.
class text_report final : public result_sink {
public:
    explicit text_report(verbosity_t verbosity) : m_verbosity(verbosity) {}

    void note(std::string_view text) override;
    void take(const result_t& result, const tally& so_far) override;
    void tick(const tally& so_far) override;
    void finish(ending_t ending, const tally& sum) override;

private:
    verbosity_t m_verbosity;
    screen m_screen;
    std::chrono::steady_clock::time_point m_last_progress = std::chrono::steady_clock::now();
};
