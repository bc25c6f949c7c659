#include "cli/planning/earlier_run.h"

#include "cli/existing_output.h"
#include "cli/modification_time.h"
#include "cli/reporting/json_record.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

// False where the log does not tell when the raw file was written, and where one that was converted is gone:
// into an archive, say.
bool has_changed_since(const result_t& result) {
    const auto now = inq_modification_time(result.job.input);
    if (!now && is_done(result.outcome))
        return false;
    return result.modification_time && now != result.modification_time;
}

} // namespace

earlier_run::earlier_run(const std::string& log) {
    std::error_code unknown;
    if (log.empty() || fs::status(log, unknown).type() == fs::file_type::not_found)
        return;
    std::ifstream lines(log, std::ios::binary);
    for (std::string line; std::getline(lines, line);)
        if (auto result = result_of_json(line))
            m_results.insert_or_assign(result->job.input, std::move(*result));
    if (!lines.eof())
        throw std::system_error(errno, std::generic_category(), "cannot read the log " + log);
}

std::optional<result_t> earlier_run::settle(const job_t& job) const {
    const auto found = m_results.find(job.input);
    if (found == m_results.end())
        return {};
    const result_t& earlier = found->second;
    if (earlier.job.output != job.output || may_pass(earlier.outcome) || has_changed_since(earlier))
        return {};
    if (is_done(earlier.outcome) && !has_output(job))
        return {};
    result_t result{job, earlier.outcome, earlier.reason, {}};
    if (is_done(earlier.outcome)) {
        result.outcome = outcome_t::skipped;
        result.reason = "an earlier run converted it";
    }
    result.modification_time = earlier.modification_time; // for the next run
    return result;
}
