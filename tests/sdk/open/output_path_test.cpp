#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;

// Runs a conversion in a process of its own after preparing that, and says whether it failed with the
// expected words in its reason. Permissions mean nothing to root, so the process is nobody's.
bool fails_elsewhere(const std::function<void()>& prepare, const fs::path& tiff, const std::string& words) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && ::setuid(nobody) != 0)
            ::_exit(2);
        prepare();
        const conversion_run run = convert(sample("5d2_1comp.cr2"), tiff);
        const bool names_target = run.reason.find(tiff.string()) != std::string::npos;
        const bool explains = run.reason.find(words) != std::string::npos;
        if (run.code == eds_ok || run.code == eds_file_not_found || !names_target || !explains)
            std::fprintf(stderr, "%u %s\n", run.code, run.reason.c_str());
        ::_exit(run.code != eds_ok && run.code != eds_file_not_found && names_target && explains ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

void limit_file_size() {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100'000, 100'000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(OutputPath, FailureNamesTheTargetAndLeavesNothing) {
    const scratch_folder scratch;
    const fs::path& folder = scratch.inq_path();
    const auto everyone = fs::perms::all;
    const auto read_only = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    const auto no_writing =
        read_only | fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    fs::permissions(folder, everyone);
    fs::create_directory(folder / "locked");
    fs::permissions(folder / "locked", no_writing);
    fs::create_directory(folder / "folder.tif");
    write_file(folder / "older.tif", "older");
    fs::permissions(folder / "older.tif", fs::perms::all);
    write_file(folder / "protected.tif", "protected");
    fs::permissions(folder / "protected.tif", read_only);
    fs::create_symlink("older.tif", folder / "link.tif");
    const auto nothing = [] {};
    const auto before = list_folder(folder);
    struct row {
        std::function<void()> prepare;
        fs::path tiff;
        const char* words;
    };
    const row rows[] = {
        {nothing, folder / "missing" / "out.tif", "No such file or directory"},
        {nothing, folder / "older.tif" / "out.tif", "Not a directory"},
        {nothing, folder / "folder.tif", "Is a directory"},
        {nothing, folder / "link.tif", "not a regular file"},
        {nothing, "/dev/full", "not a regular file"},
        {nothing, folder / "locked" / "out.tif", "Permission denied"},
        {nothing, folder / "protected.tif", "Permission denied"},
        {nothing, folder / (std::string(300, 'a') + ".tif"), "File name too long"},
        {limit_file_size, folder / "new.tif", "File too large"},
        {limit_file_size, folder / "older.tif", "File too large"},
    };
    for (const row& row : rows) {
        EXPECT_TRUE(fails_elsewhere(row.prepare, row.tiff, row.words)) << row.tiff;
        EXPECT_EQ(list_folder(folder), before) << row.tiff;
    }
    EXPECT_TRUE(list_folder(folder / "locked").empty());
    EXPECT_EQ(read_file(folder / "older.tif"), "older");
    EXPECT_EQ(read_file(folder / "protected.tif"), "protected");
}

TEST(OutputPath, OlderFileIsReplacedWithTheUsualPermissions) {
    const scratch_folder folder;
    const fs::path tiff = folder.inq_path() / "out.tif";
    write_file(tiff, "older");
    fs::permissions(tiff, fs::perms::owner_read | fs::perms::owner_write);
    const mode_t mask = ::umask(0027);
    EXPECT_EQ(convert(sample("5d2_1comp.cr2"), tiff).code, eds_ok);
    ::umask(mask);
    EXPECT_EQ(list_folder(folder.inq_path()), std::vector<std::string>{"out.tif"});
    EXPECT_GT(fs::file_size(tiff), 400U * 300 * 6);
    EXPECT_EQ(fs::status(tiff).permissions(), static_cast<fs::perms>(0640));
}

} // namespace
