#include "cli/reporting/info_report.h"

#include "cli/reporting/facts_text.h"
#include "cli/reporting/json_record.h"
#include "cli/reporting/one_line.h"
#include "cli/reporting/progress.h"
#include "cli/reporting/tally.h"

#include <cerrno>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <system_error>

namespace {

// The name of the file, and below it a line for each fact that is known.
std::string text_of(const result_t& result) {
    const sdk_open::picture_facts& facts = result.facts;
    const std::pair<const char*, std::string> rows[] = {
        {"camera", facts.camera},
        {"lens", facts.lens},
        {"date", facts.date_time},
        {"exposure", exposure_text(facts)},
        {"aperture", aperture_text(facts)},
        {"ISO", iso_text(facts)},
        {"focal length", focal_length_text(facts)},
        {"size", size_text(facts)},
        {"orientation", orientation_text(facts)},
        {"white balance", white_balance_text(facts)},
    };
    constexpr int name_columns = 15;
    std::ostringstream text;
    text << one_line(result.job.input) << '\n';
    for (const auto& [name, value] : rows)
        if (!value.empty())
            text << "  " << std::left << std::setw(name_columns) << name << one_line(value) << '\n';
    return text.str();
}

} // namespace

void info_report::take(const result_t& result, const tally&) {
    if (!is_done(result.outcome))
        m_screen.write_line(describe(result));
    if (m_form == info_form_t::json)
        std::cout << json_of(result) + '\n';
    else if (is_done(result.outcome))
        std::cout << text_of(result);
    if (!std::cout.flush())
        throw std::system_error(errno, std::generic_category(), "cannot write standard output");
}

void info_report::finish(ending_t ending, const tally& sum) {
    if (ending == ending_t::interrupted)
        m_screen.write_line("interrupted, " + std::to_string(sum.inq_left()) + " files left");
}
