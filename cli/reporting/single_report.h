#pragma once

#include "cli/options.h"
#include "cli/reporting/result_sink.h"
#include "cli/reporting/screen.h"

// What a person sees of a single file: one line where it failed, and with -v where it did not.
class single_report final : public result_sink {
public:
    explicit single_report(verbosity_t verbosity) : m_verbosity(verbosity) {}

    void note(std::string_view text) override;
    void take(const result_t& result, const tally& so_far) override;
    void finish(ending_t ending, const tally& sum) override;

private:
    verbosity_t m_verbosity;
    screen m_screen;
};
