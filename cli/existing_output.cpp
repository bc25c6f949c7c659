#include "cli/existing_output.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// False where the system does not tell: the conversion says then what is wrong.
bool is_up_to_date(const job_t& job) {
    std::error_code input_error;
    std::error_code output_error;
    const auto input_time = fs::last_write_time(job.input, input_error);
    const auto output_time = fs::last_write_time(job.output, output_error);
    return !input_error && !output_error && input_time <= output_time;
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

sdk_open::replacing_t may_replace_output(const job_t& job) {
    const bool may = job.existing == existing_t::overwrite || has_output(job);
    return may ? sdk_open::replacing_t::allowed : sdk_open::replacing_t::refused;
}
