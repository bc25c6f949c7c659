#include "cli/planning/earlier_run.h"

#include "cli/reporting/json_record.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

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
    if (found == m_results.end() || found->second.job.output != job.output || may_pass(found->second.outcome))
        return {};
    if (!is_done(found->second.outcome))
        return result_t{job, found->second.outcome, found->second.reason, {}};
    std::error_code unknown;
    if (!fs::exists(job.output, unknown))
        return {};
    return result_t{job, outcome_t::skipped, "an earlier run converted it", {}};
}
