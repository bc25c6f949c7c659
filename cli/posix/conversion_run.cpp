#include "cli/converting/conversion_run.h"

#include "cli/posix/begun_files.h"
#include "cli/posix/folder_of.h"
#include "cli/posix/worker_team.h"

#include <set>

namespace {

// What a run that was killed has left beside the TIFFs and the report. Its processes may still be ending when
// the next one begins, which therefore looks twice.
void tidy_up(const std::vector<job_t>& jobs, const options_t& options) {
    std::set<std::string> folders;
    for (const job_t& job : jobs)
        if (!job.output.empty())
            folders.insert(folder_of(job.output));
    if (!options.report.empty())
        folders.insert(folder_of(options.report));
    for (const std::string& folder : folders)
        remove_begun_files(folder);
}

} // namespace

ending_t convert_all(const std::vector<job_t>& jobs, const options_t& options, reports& reports) {
    tidy_up(jobs, options);
    const ending_t ending = worker_team(jobs, options, reports).run();
    tidy_up(jobs, options);
    return ending;
}
