#pragma once

#include "cli/options.h"
#include "cli/reporting/result_sink.h"
#include "cli/reporting/screen.h"

#include <chrono>

// The progress: on a terminal a bar that goes on below the lines, or everywhere a line now and then.
enum class progress_form_t { bar, lines };

// What a person sees of many files: a line for each failure, with -v for each file, the progress and the sum.
class text_report final : public result_sink {
public:
    text_report(verbosity_t verbosity, progress_form_t form)
        : m_verbosity(verbosity), m_has_bar(form == progress_form_t::bar && m_screen.has_status()) {}

    void note(std::string_view text) override;
    void take(const result_t& result, const tally& so_far) override;
    void tick(const tally& so_far) override;
    void finish(ending_t ending, const tally& sum) override;

private:
    verbosity_t m_verbosity;
    screen m_screen;
    bool m_has_bar;
    std::chrono::steady_clock::time_point m_last_progress = std::chrono::steady_clock::now();
};
