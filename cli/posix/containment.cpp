#include "cli/posix/containment.h"

#include "cli/posix/folder_of.h"
#include "cli/posix/landlock.h"
#include "cli/posix/system_call_filter.h"

#include <ctime>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace fs = std::filesystem;

namespace {

// How many processors there are, which the C library and OpenMP look up.
constexpr auto processors = "/sys/devices/system/cpu";

// The folder or, of those that lead to it from `top`, the last one that is there: the others will be made in
// it. Never one above the top, whatever is missing.
std::string nearest_existing(const fs::path& folder, const fs::path& top) {
    std::error_code ignored;
    fs::path nearest = top;
    for (const fs::path& part : folder.lexically_relative(top)) {
        if (!fs::exists(nearest / part, ignored))
            break;
        nearest /= part;
    }
    return nearest.string();
}

// A worker has four files open between conversions, and five more during one.
void limit_resources() noexcept {
    constexpr rlimit no_core{0, 0};
    constexpr rlimit files{64, 64};
    ::setrlimit(RLIMIT_CORE, &no_core);
    ::setrlimit(RLIMIT_NOFILE, &files);
}

std::string describe(bool has_landlock, bool has_filter) {
    if (has_landlock && has_filter)
        return "contained by Landlock and a filter of system calls";
    if (has_landlock || has_filter)
        return has_filter ? "contained by a filter of system calls alone" : "contained by Landlock alone";
    return "not contained: the system has neither Landlock nor filters of system calls";
}

} // namespace

containment::containment(const std::vector<job_t>& jobs, const std::string& made_folder,
                         const std::string& temporary_folder)
    : m_read{processors}, m_written{temporary_folder} {
    std::error_code ignored;
    std::set<std::string> output_folders;
    for (const job_t& job : jobs) {
        const bool is_link = fs::is_symlink(job.input, ignored);
        m_read.insert(is_link ? job.input : folder_of(job.input));
        if (!job.output.empty())
            output_folders.insert(folder_of(job.output));
    }
    for (const std::string& folder : output_folders)
        m_written.insert(made_folder.empty() ? folder : nearest_existing(folder, made_folder));
}

// The time zone is read beforehand, from wherever the environment says that it is.
std::string containment::enter() const {
    ::tzset();
    limit_resources();
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    const bool has_landlock = landlock::restrict_process(m_read, m_written);
    const bool has_filter = filter_system_calls();
    return describe(has_landlock, has_filter);
}
