#include "tests/sdk/open/conversion_run.h"
#include "tests/support/posix/without_privileges.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

// A folder with an older.tif that anyone may write into.
class output_path : public testing::Test {
protected:
    output_path() {
        write_file(m_folder / "older.tif", "older");
        fs::permissions(m_folder, fs::perms::all);
        fs::permissions(m_folder / "older.tif", fs::perms::all);
    }

    void expect_failure(const fs::path& raw, const fs::path& tiff, const std::string& why) const {
        const auto before = list_folder(m_folder);
        const conversion_run run = convert(raw, tiff);
        EXPECT_NE(run.code, eds_ok) << tiff;
        EXPECT_NE(run.code, eds_file_not_found) << tiff;
        EXPECT_EQ(run.reason, "cannot write " + tiff.string() + ": " + why);
        EXPECT_EQ(list_folder(m_folder), before) << tiff;
        EXPECT_EQ(read_file(m_folder / "older.tif"), "older") << tiff;
    }

    const scratch_folder m_scratch;
    const fs::path m_folder = m_scratch.inq_path();
    const scratch_folder m_raw_folder;
    const fs::path m_raw = sample_for_anyone("5d2_1comp.cr2", m_raw_folder);
};

TEST_F(output_path, failure_names_the_target_and_leaves_nothing) {
    constexpr auto no_writing = static_cast<fs::perms>(0555);
    fs::create_directory(m_folder / "folder.tif");
    fs::create_symlink("older.tif", m_folder / "link.tif");
    fs::create_directory(m_folder / "locked");
    fs::permissions(m_folder / "locked", no_writing);
    write_file(m_folder / "protected.tif", "protected");
    fs::permissions(m_folder / "protected.tif", no_writing);
    struct row {
        fs::path tiff;
        const char* why;
    };
    const row rows[] = {
        {m_folder / "missing" / "out.tif", "No such file or directory"},
        {m_folder / "older.tif" / "out.tif", "Not a directory"},
        {m_folder / "folder.tif", "Is a directory"},
        {m_folder / "link.tif", "not a regular file"},
        {"/dev/full", "not a regular file"},
        {m_folder / "locked" / "out.tif", "Permission denied"},
        {m_folder / "protected.tif", "Permission denied"},
        {m_folder / (std::string(300, 'a') + ".tif"), "File name too long"},
    };
    const without_privileges rights;
    for (const row& row : rows)
        expect_failure(m_raw, row.tiff, row.why);
}

TEST_F(output_path, failing_write_leaves_nothing) {
    rlimit old{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const rlimit limit{100'000, old.rlim_max};
    auto* const old_handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    expect_failure(m_raw, m_folder / "new.tif", "File too large");
    expect_failure(m_raw, m_folder / "older.tif", "File too large");
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, old_handler);
}

TEST_F(output_path, raw_file_itself_is_refused_by_every_name) {
    const fs::path raw = m_folder / "a.cr2";
    fs::copy_file(m_raw, raw);
    fs::permissions(raw, fs::perms::all);
    fs::create_symlink("a.cr2", m_folder / "link.cr2");
    fs::create_hard_link(raw, m_folder / "hard.tif");
    const std::string bytes = read_file(raw);
    const fs::path other_spelling = m_folder / ".." / m_folder.filename() / "." / "a.cr2";
    for (const fs::path& tiff : {raw, other_spelling, m_folder / "hard.tif"})
        expect_failure(raw, tiff, "it is the raw file itself");
    expect_failure(m_folder / "link.cr2", raw, "it is the raw file itself");
    expect_failure(m_folder / "link.cr2", m_folder / "link.cr2", "not a regular file");
    EXPECT_TRUE(read_file(raw) == bytes);
}

TEST_F(output_path, older_file_is_replaced_with_the_usual_permissions) {
    const mode_t mask = ::umask(0027);
    EXPECT_EQ(convert(m_raw, m_folder / "older.tif").code, eds_ok);
    ::umask(mask);
    EXPECT_EQ(list_folder(m_folder), std::vector<std::string>{"older.tif"});
    EXPECT_GT(fs::file_size(m_folder / "older.tif"), 400U * 300 * 6);
    EXPECT_EQ(fs::status(m_folder / "older.tif").permissions(), static_cast<fs::perms>(0640));
}

} // namespace
