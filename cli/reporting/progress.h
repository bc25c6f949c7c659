#pragma once

#include "cli/reporting/result_sink.h"
#include "cli/reporting/screen.h"
#include "cli/reporting/tally.h"

#include <string>

// The words of the reports.

// "IMG_1.CR2: the pixel data end early", "IMG_2.CR2: converted in 0.61 s".
[[nodiscard]] std::string describe(const result_t& result);

// "120 of 400 files, 2 failed, 41.3 MP/s, 0:02:31 left".
[[nodiscard]] std::string describe_progress(const tally& so_far);

// The same after a bar, and then the last failure, cut to the screen's width.
[[nodiscard]] std::string progress_bar(const tally& so_far, const screen& screen);

// "398 converted, 0 skipped, 2 failed in 0:03:20, 41.3 MP/s", and what to do about the rest.
[[nodiscard]] std::string describe_sum(ending_t ending, const tally& sum);
