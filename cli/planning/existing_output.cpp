#include "cli/planning/existing_output.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

existing_t policy_of(const options_t& options) {
    if (options.existing)
        return *options.existing;
    if (!options.output.empty())
        return existing_t::overwrite;
    return options.resume.empty() ? existing_t::error : existing_t::newer;
}

// False where the system does not tell: the conversion says then what is wrong.
bool is_up_to_date(const job_t& job) {
    std::error_code input_error;
    std::error_code output_error;
    const auto input_time = fs::last_write_time(job.input, input_error);
    const auto output_time = fs::last_write_time(job.output, output_error);
    return !input_error && !output_error && input_time <= output_time;
}

} // namespace

std::optional<result_t> settle_by_output(const job_t& job, const options_t& options) {
    const existing_t policy = policy_of(options);
    std::error_code unknown;
    if (policy == existing_t::overwrite || !fs::exists(fs::symlink_status(job.output, unknown)))
        return {};
    if (policy == existing_t::error)
        return result_t{job, outcome_t::output_exists, job.output + " exists (see --existing)", {}};
    if (policy == existing_t::newer && !is_up_to_date(job))
        return {};
    return result_t{job, outcome_t::skipped, job.output + " exists", {}};
}
