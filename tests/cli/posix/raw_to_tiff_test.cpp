#include "tests/cli/posix/program_fixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// A folder that holds a sound raw file and an older target.
class raw_to_tiff_test : public program_fixture {
protected:
    raw_to_tiff_test() {
        fs::copy_file(SAMPLE_FILE, m_raw);
        write_file(m_older, "older");
    }

    // The program must say in one line what is to blame and why, and leave everything as it was.
    void expect_failure(int exit_code, const words_t& arguments, const std::string& blamed,
                        const std::string& reason, const std::string& prefix = "") {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const auto before = list_folder(m_folder);
        EXPECT_EQ(run(arguments, prefix), exit_code);
        EXPECT_EQ(m_output, "");
        EXPECT_TRUE(m_errors.starts_with("raw-to-tiff: " + blamed)) << m_errors;
        EXPECT_NE(m_errors.find(reason), std::string::npos) << m_errors;
        EXPECT_EQ(m_errors.find('\n'), m_errors.size() - 1) << m_errors;
        EXPECT_EQ(list_folder(m_folder), before);
        EXPECT_TRUE(fs::is_empty(m_temporary));
        EXPECT_EQ(read_file(m_older), "older");
    }

    const std::string m_raw = path_of("\U0001F4F7 1.CR2");
    const std::string m_older = path_of("\u0442 2.tif");
};

TEST_F(raw_to_tiff_test, answers_and_converts) {
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_NE(m_output.find("Usage: raw-to-tiff"), std::string::npos) << m_output;
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(m_output, "raw-to-tiff " PROGRAM_VERSION "\n");
    write_file(path_of("older.TiFF"), "older");
    EXPECT_EQ(run({m_raw, path_of("older.TiFF")}), 0);
    write_file(path_of("from mktemp"), "");
    EXPECT_EQ(run({m_raw, "-o", path_of("from mktemp")}), 0);
    EXPECT_EQ(run({m_raw, path_of("new")}), 0);
    EXPECT_EQ(run({m_raw, m_older}), 0);
    EXPECT_EQ(m_output + m_errors, "");
    EXPECT_TRUE(read_file(m_older).starts_with("II*"));
    EXPECT_TRUE(fs::is_empty(m_temporary));
}

TEST_F(raw_to_tiff_test, says_what_is_wrong) {
    write_file(path_of("empty.cr2"), "");
    write_file(path_of("1.JPG"), "JPEG");
    write_file(path_of("text.crw"), "Dear diary, today I was mistaken for a picture.\n");
    write_file(path_of("short.cr2"), read_file(m_raw).substr(0, 100'000));
    fs::create_directory(path_of("folder.cr2"));
    fs::create_directory(path_of("folder.tif"));
    fs::copy_file(m_raw, path_of("locked.cr2"));
    fs::permissions(path_of("locked.cr2"), fs::perms::none);
    ASSERT_EQ(::mkfifo(path_of("pipe.cr2").c_str(), 0600), 0);
    // The superuser gives up the right to ignore permissions; nobody else has it.
    const std::string locked =
        ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search" : "";
    const std::string unspeakable = ": the name is not UTF-8, holds a backslash, is too long, or";
    const struct {
        int exit_code;
        words_t arguments;
        std::string blamed;
        std::string reason;
        std::string prefix = {};
    } rows[] = {
        {2, {}, "", "RAW is required"},
        {2, {m_raw, path_of("new.tif"), "--wrong"}, "", "--wrong"},
        {2, {"", path_of("new.tif")}, "", "RAW: the name is empty"},
        {2, {m_raw, ""}, "", "RAW: the name is empty"},
        {2,
         {m_raw, path_of("1.JPG")},
         "TIFF: ",
         "it exists, and the name does not end in .tif or .tiff: " + path_of("1.JPG")},
        {2, {"-o", path_of("1.JPG"), m_raw}, "--output: ", "it exists, and the name does not end in .tif"},
        {10, {path_of("none/a.cr2"), m_older}, path_of("none/a.cr2: "), "no such file"},
        {11, {m_older, path_of("new.tif")}, m_older + ": ", "not a .cr2 or .crw file"},
        {11, {path_of("folder.cr2"), m_older}, path_of("folder.cr2: "), "it is a folder"},
        {11, {path_of("empty.cr2"), m_older}, path_of("empty.cr2: "), "the file is empty"},
        {11, {path_of("text.crw"), m_older}, path_of("text.crw: "), "no Canon raw picture in it"},
        {11, {path_of("short.cr2"), m_older}, path_of("short.cr2: "), "end early"},
        {11, {path_of("pipe.cr2"), m_older}, path_of("pipe.cr2: "), "not a regular file"},
        {11, {path_of("locked.cr2"), m_older}, path_of("locked.cr2: "), "Permission denied", locked},
        {11, {path_of("a\\b.cr2"), m_older}, path_of("a\\b.cr2") + unspeakable, ""},
        {11, {m_raw, path_of("\xFC.tif")}, m_raw, path_of("?.tif") + unspeakable},
        {11, {m_raw, path_of("folder.tif")}, m_raw + ": ", "Is a directory"},
        {11, {m_raw, path_of("none/new.tif")}, m_raw + ": ", "none/new.tif: No such file or directory"},
        {11, {m_raw, m_older}, m_raw + ": ", m_older + ": File too large", "ulimit -f 64;"},
    };
    for (const auto& [exit_code, arguments, blamed, reason, prefix] : rows)
        expect_failure(exit_code, arguments, blamed, reason, prefix);
}

TEST_F(raw_to_tiff_test, has_a_full_disk) {
    if (std::system("unshare --mount true") != 0)
        GTEST_SKIP() << "only the superuser can make a small disk";
    const std::string disk = path_of("disk");
    fs::create_directory(disk);
    // Prints what the disk holds at the end: nothing.
    const std::string script =
        R"(mount -t tmpfs -o size=64k none "$0" && "$@"; code=$?; ls -A "$0"; exit $code)";
    const std::string prefix = "unshare --mount sh -c '" + script + "' '" + disk + "'";
    expect_failure(11, {m_raw, disk + "/new.tif"}, m_raw, "new.tif: No space left on device", prefix);
}

} // namespace
