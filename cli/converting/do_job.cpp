#include "cli/converting/do_job.h"

#include "cli/converting/convert_file.h"
#include "cli/converting/describe_file.h"
#include "cli/modification_time.h"

#include <chrono>

result_t do_job(const job_t& job) {
    const auto modification_time = inq_modification_time(job.input);
    const auto start = std::chrono::steady_clock::now();
    result_t result = job.task == task_t::convert ? convert_file(job) : describe_file(job);
    result.modification_time = modification_time;
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}
