#include "cli/reporting/progress.h"

#include "cli/reporting/number_text.h"
#include "cli/reporting/one_line.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iomanip>
#include <sstream>

namespace {

constexpr std::size_t bar_columns = 24;

// 9051 seconds are 2:30:51.
std::string clock_time(double seconds) {
    const auto all = std::llround(seconds);
    std::ostringstream text;
    text << all / 3600 << std::setfill('0') << ':' << std::setw(2) << all / 60 % 60 << ':' << std::setw(2)
         << all % 60;
    return text.str();
}

std::string describe_pace(const tally& tally) {
    return fixed(tally.inq_megapixels() / std::max(tally.inq_seconds(), 1e-3), 1) + " MP/s";
}

} // namespace

std::string describe(const result_t& result) {
    if (result.outcome == outcome_t::converted)
        return result.job.input + ": converted in " + fixed(result.seconds, 2) + " s";
    const bool is_skipped = result.outcome == outcome_t::skipped;
    return result.job.input + (is_skipped ? ": skipped, " : ": ") + result.reason;
}

std::string describe_progress(const tally& so_far) {
    std::string text = std::to_string(so_far.inq_files() - so_far.inq_left()) + " of " +
                       std::to_string(so_far.inq_files()) + " files, ";
    if (so_far.inq_failed() > 0)
        text += std::to_string(so_far.inq_failed()) + " failed, ";
    text += describe_pace(so_far);
    if (so_far.inq_seconds_left() > 0)
        text += ", " + clock_time(so_far.inq_seconds_left()) + " left";
    return text;
}

std::string progress_bar(const tally& so_far, const screen& screen) {
    const std::size_t columns = screen.inq_columns();
    if (columns <= bar_columns + 1)
        return {};
    const std::size_t files = std::max<std::size_t>(so_far.inq_files(), 1);
    const std::size_t done = bar_columns * (so_far.inq_files() - so_far.inq_left()) / files;
    const std::string progress = ' ' + describe_progress(so_far);
    const std::string_view shown = cut_to_columns(progress, columns - bar_columns - 1);
    const std::string failure =
        so_far.inq_last_failure().empty() ? "" : "  " + one_line(so_far.inq_last_failure());
    const std::size_t free_columns = columns - bar_columns - shown.size() - 1;
    return screen.bar(done, bar_columns) + std::string(shown) +
           screen.in_red(cut_to_columns(failure, free_columns));
}

std::string describe_sum(ending_t ending, const tally& sum) {
    std::string text = ending == ending_t::interrupted ? "interrupted: "
                       : ending == ending_t::stopped   ? "stopped: "
                                                       : "";
    text += std::to_string(sum.inq_converted()) + " converted, " + std::to_string(sum.inq_skipped()) +
            " skipped, " + std::to_string(sum.inq_failed()) + " failed in " + clock_time(sum.inq_seconds()) +
            ", " + describe_pace(sum);
    if (sum.inq_left() > 0)
        text += "; " + std::to_string(sum.inq_left()) +
                " left, which the same command does with --existing newer, or --resume and the log";
    return text;
}
