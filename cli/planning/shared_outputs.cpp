#include "cli/planning/shared_outputs.h"

#include "cli/planning/name_resolver.h"

#include <unordered_map>

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
