#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/posix/without_privileges.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

namespace fs = std::filesystem;

// A folder with a raw file and an older target, all for anyone: also for users who may not enter the
// checkout.
class refusing_system : public testing::Test {
protected:
    refusing_system() {
        fs::copy_file(sample("5d2_1comp.cr2"), m_raw);
        write_file(m_older, "older");
        for (const fs::path& path : {m_folder, m_raw, m_older})
            fs::permissions(path, fs::perms::all);
    }

    void expect_failure(const fs::path& raw, const fs::path& tiff, const std::string& why) const {
        const auto before = list_folder(m_folder);
        EXPECT_EQ(convert(raw, tiff), "cannot write " + tiff.string() + ": " + why);
        EXPECT_EQ(list_folder(m_folder), before) << tiff;
        EXPECT_EQ(read_file(m_older), "older") << tiff;
    }

    const scratch_folder m_scratch;
    const fs::path m_folder = m_scratch.inq_path();
    const fs::path m_raw = m_folder / "raw.cr2";
    const fs::path m_older = m_folder / "older.tif";
};

TEST_F(refusing_system, finds_no_raw_file_only_where_none_is_in_reach) {
    fs::create_symlink("circle", m_folder / "circle");
    const std::pair<fs::path, const char*> rows[] = {
        {m_folder / "missing", "cannot open it: No such file or directory"},
        {m_older / "below", "cannot open it: Not a directory"},
        {m_folder / "circle", "cannot open it: Too many levels of symbolic links"},
        {m_folder / std::string(300, 'a'), "cannot open it: File name too long"},
    };
    for (const auto& [path, reason] : rows) {
        __EdsObject* stream = nullptr;
        ASSERT_EQ(EdsInitializeSDK(), eds_ok);
        const eds_error_t code = open_stream(path, eds_disposition_t::open_existing, &stream);
        EXPECT_EQ(code, eds_file_not_found) << path;
        EXPECT_EQ(inq_sdk_failure_reason(), reason) << path;
    }
}

TEST_F(refusing_system, has_no_place_for_the_target) {
    fs::create_symlink("older.tif", m_folder / "link.tif");
    fs::create_directory(m_folder / "locked");
    write_file(m_folder / "protected.tif", "protected");
    for (const char* name : {"locked", "protected.tif"})
        fs::permissions(m_folder / name, static_cast<fs::perms>(0555));
    const without_privileges rights;
    expect_failure(m_raw, m_folder / "link.tif", "not a regular file");
    expect_failure(m_raw, "/dev/full", "not a regular file");
    expect_failure(m_raw, m_folder / "locked" / "out.tif", "Permission denied");
    expect_failure(m_raw, m_folder / "protected.tif", "Permission denied");
    expect_failure(m_raw, m_folder / (std::string(300, 'a') + ".tif"), "File name too long");
}

TEST_F(refusing_system, has_other_names_for_the_raw_file) {
    fs::create_symlink("raw.cr2", m_folder / "link.cr2");
    fs::create_hard_link(m_raw, m_folder / "hard.tif");
    const fs::path other_spelling = m_folder / ".." / m_folder.filename() / "." / "raw.cr2";
    for (const fs::path& tiff : {m_raw, other_spelling, m_folder / "hard.tif"})
        expect_failure(m_raw, tiff, "it is the raw file itself");
    expect_failure(m_folder / "link.cr2", m_raw, "it is the raw file itself");
    EXPECT_TRUE(read_file(m_raw) == read_file(sample("5d2_1comp.cr2")));
}

TEST_F(refusing_system, has_an_older_file_replaced_with_the_usual_permissions) {
    const mode_t mask = ::umask(0027);
    EXPECT_EQ(convert(m_raw, m_older), "");
    ::umask(mask);
    EXPECT_EQ(list_folder(m_folder).size(), 2U);
    EXPECT_GT(fs::file_size(m_older), 400U * 300 * 6);
    EXPECT_EQ(fs::status(m_older).permissions(), static_cast<fs::perms>(0640));
}

// In a process of its own, as a user who may have only this many threads in all: those that there are do the
// work. A process that starts none has none left afterwards.
TEST_F(refusing_system, starts_no_more_threads) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the superuser can become a user without other processes";
    const fs::path by_libraw = m_folder / "four_colours.crw";
    fs::copy_file(sample("../../fuzz/corpus/crw_file/four_colours.crw"), by_libraw);
    fs::permissions(by_libraw, fs::perms::all);
    for (const auto& [raw, n_threads] : {std::pair{m_raw, rlim_t{1}}, {m_raw, 2}, {by_libraw, 1}}) {
        const pid_t child = ::fork();
        if (child == 0) {
            constexpr uid_t nobody_else = 54321; // whose other processes would count as well
            const rlimit limit{n_threads, n_threads};
            if (::setrlimit(RLIMIT_NPROC, &limit) != 0 || ::setuid(nobody_else) != 0)
                ::_exit(2);
            ::_exit(convert(raw, m_folder / "out.tif").empty() ? 0 : 1);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << raw << n_threads;
    }
}

} // namespace
