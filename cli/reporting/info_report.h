#pragma once

#include "cli/reporting/result_sink.h"
#include "cli/reporting/screen.h"

enum class info_form_t { text, json };

// What is known of each file, on standard output; a file that cannot be read has a line on standard error.
class info_report final : public result_sink {
public:
    explicit info_report(info_form_t form) : m_form(form) {}

    void take(const result_t& result, const tally& so_far) override;
    void finish(ending_t ending, const tally& sum) override;

private:
    info_form_t m_form;
    screen m_screen;
};
