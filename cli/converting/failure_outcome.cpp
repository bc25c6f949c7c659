#include "cli/converting/failure_outcome.h"

#include "conversion/edsdk.h"
#include "conversion/pixrerr.h"
#include "conversion/raw_extension.h"

#include <utility>

namespace {

outcome_t outcome_of_failure() {
    switch (inq_sdk_failure_blame()) {
    case sdk_blame_t::picture:
        return outcome_t::bad_input;
    case sdk_blame_t::system:
    case sdk_blame_t::appeared_output:
        return outcome_t::system_failed;
    case sdk_blame_t::full_disk:
        return outcome_t::disk_full;
    case sdk_blame_t::memory:
        return outcome_t::over_memory;
    }
    return outcome_t::system_failed;
}

} // namespace

void fail(result_t& result, outcome_t outcome, std::string reason) {
    result.outcome = outcome;
    result.reason = std::move(reason);
}

void explain_failure(result_t& result, int code, const ZFileLocation& raw) {
    if (code == pixrerr_missing_file)
        return fail(result, outcome_t::missing, "there is no such file, or it cannot be reached");
    if (!has_raw_extension(raw))
        return fail(result, outcome_t::bad_input, "not a .cr2 or .crw file");
    if (inq_sdk_failure_reason().empty())
        return fail(result, outcome_t::over_memory, "not enough memory");
    fail(result, outcome_of_failure(), std::string(inq_sdk_failure_reason()));
}
