#include "cli/existing_output.h"

#include <chrono>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// By how much file systems may have made a TIFF older that was given the time of its raw file: FAT knows even
// seconds only.
std::chrono::seconds rounding_of_times(const job_t& job) {
    return std::chrono::seconds(job.keeps_modification_time ? 2 : 0);
}

// False where the system does not tell: the conversion says then what is wrong.
bool is_up_to_date(const job_t& job) {
    std::error_code input_error;
    std::error_code output_error;
    const auto input_time = fs::last_write_time(job.input, input_error);
    const auto output_time = fs::last_write_time(job.output, output_error);
    return !input_error && !output_error && input_time <= output_time + rounding_of_times(job);
}

} // namespace

bool has_output(const job_t& job) {
    std::error_code unknown;
    return fs::is_regular_file(job.output, unknown);
}

std::optional<result_t> settle_by_output(const job_t& job) {
    if (job.existing == existing_t::overwrite || !has_output(job))
        return {};
    if (job.existing == existing_t::error)
        return result_t{job, outcome_t::output_exists, job.output + " exists (see --existing)", {}};
    if (job.existing == existing_t::newer && !is_up_to_date(job))
        return {};
    return result_t{job, outcome_t::skipped, job.output + " exists", {}};
}

sdk_open::expected_target_t expected_output(const job_t& job) {
    using namespace sdk_open::system_calls;
    if (job.existing == existing_t::overwrite)
        return {};
    file_status status;
    return status_of_path(job.output, status) == 0 ? status : file_status();
}
