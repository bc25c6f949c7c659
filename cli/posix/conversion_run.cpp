#include "cli/converting/conversion_run.h"

#include "cli/posix/begun_files.h"
#include "cli/posix/folder_of.h"
#include "cli/posix/worker_team.h"

#include <set>
#include <string>

namespace {

// What a run that was killed has left beside the TIFFs and the report. Its processes may still be ending when
// the next one begins, which therefore looks twice.
void tidy_up(const plan_t& plan, const options_t& options) {
    std::set<std::string> folders;
    const auto insert_folder_of = [&](const std::string& file) {
        if (!file.empty())
            folders.insert(folder_of(file));
    };
    for (const job_t& job : plan.jobs)
        insert_folder_of(job.output);
    for (const result_t& result : plan.settled)
        insert_folder_of(result.job.output);
    insert_folder_of(options.report);
    for (const std::string& folder : folders)
        remove_begun_files(folder);
}

} // namespace

ending_t convert_all(const plan_t& plan, const options_t& options, reports& reports) {
    tidy_up(plan, options);
    const ending_t ending = worker_team(plan.jobs, options, reports).run();
    tidy_up(plan, options);
    return ending;
}
