#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// Converts as a user who may have so many threads in all; answers how the process ended.
int status_with(rlim_t threads, const fs::path& raw, const fs::path& tiff, const char* reason) {
    constexpr uid_t nobody_else = 54321; // whose other processes would count as well
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit limit{threads, threads};
        if (::setrlimit(RLIMIT_NPROC, &limit) != 0 || ::setuid(nobody_else) != 0)
            ::_exit(2);
        ::_exit(convert(raw, tiff).reason == reason ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

TEST(threads, that_cannot_be_started_do_not_end_the_process) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the superuser can become a user without other processes";
    const scratch_folder folder;
    fs::permissions(folder.inq_path(), fs::perms::all);
    const fs::path tiff = folder.inq_path() / "out.tif";
    const scratch_folder raw_folder;
    const fs::path raw = sample_for_anyone("5d2_1comp.cr2", raw_folder);
    EXPECT_EQ(status_with(1, raw, tiff, "cannot start a thread: Resource temporarily unavailable"), 0);
    EXPECT_FALSE(fs::exists(tiff));
    for (const rlim_t threads : {2U, 4U, 16U})
        EXPECT_EQ(status_with(threads, raw, tiff, ""), 0) << threads;
}

} // namespace
