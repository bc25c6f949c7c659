#include "cli/planning/shared_outputs.h"

#include <filesystem>
#include <system_error>
#include <unordered_map>

namespace fs = std::filesystem;

namespace {

// Tells whether two names are one file without asking the system twice about a folder. The last component
// stays as it is, also where it is a link: two links are two files to convert.
class name_resolver final {
public:
    [[nodiscard]] std::string resolve(const std::string& name) {
        const fs::path path(name);
        return (resolve_folder(path.parent_path().string()) / path.filename()).string();
    }

private:
    const fs::path& resolve_folder(const std::string& folder) {
        const auto [known, is_new] = m_folders.try_emplace(folder);
        if (is_new) {
            std::error_code error;
            known->second = fs::weakly_canonical(fs::absolute(folder.empty() ? "." : folder), error);
            if (error)
                known->second = fs::absolute(folder).lexically_normal();
        }
        return known->second;
    }

    std::unordered_map<std::string, fs::path> m_folders;
};

} // namespace

std::vector<std::string> remove_doubles(std::vector<job_t>& jobs) {
    name_resolver names;
    std::unordered_map<std::string, std::string> writers; // output -> input
    std::vector<std::string> conflicts;
    std::erase_if(jobs, [&](const job_t& job) {
        const std::string& result = job.output.empty() ? job.input : job.output;
        const auto [writer, is_first] = writers.try_emplace(names.resolve(result), job.input);
        if (is_first)
            return false;
        if (names.resolve(writer->second) != names.resolve(job.input))
            conflicts.push_back(writer->second + " and " + job.input + " would both become " + job.output);
        return true;
    });
    return conflicts;
}
