#include "cli/converting/conversion_run.h"

#include "cli/converting/do_job.h"

// One file after another in the user's process. The limits have no meaning here.
ending_t convert_all(const plan_t& plan, const options_t&, reports& reports) {
    for (const job_t& job : plan.jobs) {
        const result_t result = do_job(job);
        reports.take(result);
        reports.tick();
        if (result.outcome == outcome_t::disk_full)
            return ending_t::stopped;
    }
    return ending_t::complete;
}
