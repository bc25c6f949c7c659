#include "cli/converting/convert_file.h"

#include "cli/converting/failure_outcome.h"
#include "cli/converting/thumbnail.h"
#include "cli/existing_output.h"
#include "cli/file_argument.h"
#include "conversion/convert_raw_to_tiff.h"
#include "conversion/edsdk.h"
#include "conversion/pixrerr.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

bool make_folders(result_t& result) {
    std::error_code error;
    const fs::path folder = fs::path(result.job.output).parent_path();
    fs::create_directories(folder, error);
    if (!error)
        return true;
    const bool is_full = error == std::errc::no_space_on_device;
    fail(result, is_full ? outcome_t::disk_full : outcome_t::system_failed,
         "cannot make the folder " + folder.string() + ": " + error.message());
    return false;
}

void keep_modification_time(result_t& result) {
    std::error_code error;
    const auto time = fs::last_write_time(result.job.input, error);
    if (!error)
        fs::last_write_time(result.job.output, time, error);
    if (error)
        fail(result, outcome_t::system_failed,
             "written, but without the raw file's time: " + error.message());
}

// Where someone else has made or changed the TIFF meanwhile, it is as if it had been so before.
void explain_failed_conversion(result_t& result, int code, const ZFileLocation& raw) {
    explain_failure(result, code, raw);
    if (inq_sdk_failure_blame() != sdk_blame_t::appeared_output)
        return;
    if (auto settled = settle_by_output(result.job))
        result = std::move(*settled);
}

} // namespace

// The plan may be hours old: what it says of the TIFF is looked at again.
result_t convert_file(const job_t& job) {
    sdk_open::set_expected_target(expected_output(job));
    if (auto settled = settle_by_output(job))
        return std::move(*settled);
    result_t result{job, outcome_t::converted, {}, {}};
    if (job.makes_folders && !make_folders(result))
        return result;
    const auto raw = locate(job.input);
    const auto tiff = locate(job.output);
    if (!raw || !tiff) {
        fail(result, outcome_t::bad_input, "its name, or that of the TIFF, cannot be used");
        return result;
    }
    const sdk_open::facts_collection facts(result.facts);
    sdk_open::set_compression(job.compression);
    if (const int code = convert_raw_to_tiff(*raw, *tiff); code != pixrerr_ok) {
        explain_failed_conversion(result, code, *raw);
        return result;
    }
    if (job.has_thumbnail)
        result.thumbnail = make_thumbnail(job.output);
    if (job.keeps_modification_time)
        keep_modification_time(result);
    return result;
}
