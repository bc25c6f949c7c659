#include "cli/converting/conversion_run.h"

#include "cli/posix/begun_files.h"
#include "cli/posix/worker_team.h"

#include <filesystem>
#include <set>

namespace {

// What a run that was killed has left beside the TIFFs. Its processes may still be ending when the next one
// begins, which therefore looks twice.
void tidy_up(const std::vector<job_t>& jobs) {
    std::set<std::string> folders;
    for (const job_t& job : jobs)
        if (!job.output.empty())
            folders.insert(std::filesystem::path(job.output).parent_path().string());
    for (const std::string& folder : folders)
        remove_begun_files(folder);
}

} // namespace

ending_t convert_all(const std::vector<job_t>& jobs, const limits_t& limits, reports& reports) {
    tidy_up(jobs);
    const ending_t ending = worker_team(jobs, limits, reports).run();
    tidy_up(jobs);
    return ending;
}
