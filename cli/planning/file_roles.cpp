#include "cli/planning/file_roles.h"

#include "cli/planning/name_resolver.h"
#include "cli/regular_file.h"

#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr int most_links = 40; // that the system follows

// The name of the file that links lead to, also where it is yet to be made. A terminal keeps its names: it
// may be the list and the log.
std::string behind_links(const std::string& name) {
    if (!may_be_regular_file(name))
        return name;
    fs::path path(name);
    std::error_code error;
    for (int links = 0; links < most_links && fs::is_symlink(path, error); ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path.string();
}

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
        const auto [taken, is_first] = roles.try_emplace(names.resolve(behind_links(name)), role);
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
