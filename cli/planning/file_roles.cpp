#include "cli/planning/file_roles.h"

#include "cli/planning/name_resolver.h"

#include <unordered_map>
#include <utility>

namespace {

std::vector<std::pair<std::string, std::string>> named_files_and_roles(const options_t& options) {
    std::vector<std::pair<std::string, std::string>> named;
    if (!options.list.empty() && options.list != "-")
        named.emplace_back(options.list, "the list");
    if (!options.inq_log().empty())
        named.emplace_back(options.inq_log(), "the log");
    if (!options.report.empty())
        named.emplace_back(options.report, "the report");
    return named;
}

std::string conflict(const std::string& name, const std::string& role, const std::string& other_role) {
    return name + " cannot be both " + role + " and " + other_role;
}

} // namespace

std::vector<std::string> find_double_roles(const options_t& options, const std::vector<job_t>& jobs) {
    name_resolver names;
    std::unordered_map<std::string, std::string> roles; // by file
    std::vector<std::string> conflicts;
    for (const auto& [name, role] : named_files_and_roles(options)) {
        const auto [taken, is_first] = roles.try_emplace(names.resolve(name), role);
        if (!is_first)
            conflicts.push_back(conflict(name, taken->second, role));
    }
    if (roles.empty())
        return conflicts;
    for (const job_t& job : jobs)
        if (const auto taken = roles.find(names.resolve(job.output)); taken != roles.end())
            conflicts.push_back(conflict(job.output, taken->second, "the TIFF of " + job.input));
    return conflicts;
}
