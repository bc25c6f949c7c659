#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using words_t = std::vector<std::string>;

// Runs the program in a folder that holds a sound raw file, an older target and an empty temporary folder.
class raw_to_tiff_test : public testing::Test {
protected:
    raw_to_tiff_test() {
        fs::create_directories(m_temporary);
        fs::copy_file(SAMPLE_FILE, m_raw);
        write_file(m_older, "older");
    }

    [[nodiscard]] std::string path_of(const std::string& name) const { return m_folder / name; }

    // Answers the exit code, -1 when a signal ended the program. The shell gets the prefix in front of it.
    int run(const words_t& arguments, const std::string& prefix = "") {
        const fs::path output = m_scratch.inq_path() / "output";
        const fs::path errors = m_scratch.inq_path() / "errors";
        std::string command = prefix + " '" PROGRAM "'";
        for (const std::string& argument : arguments)
            command += " '" + argument + "'";
        const int status = std::system((command + " >" + output.string() + " 2>" + errors.string()).c_str());
        m_output = read_file(output);
        m_errors = read_file(errors);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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

    const scratch_folder m_scratch;
    const fs::path m_folder = m_scratch.inq_path() / "Gr\u00FC\u00DFe \u65E5 \U0001F4F7";
    const fs::path m_temporary = m_folder / "tmp";
    const std::string m_raw = path_of("\U0001F4F7 1.CR2");
    const std::string m_older = path_of("\u0442 2.tif");
    const temporary_folder_setting m_setting{m_temporary};
    std::string m_output;
    std::string m_errors;
};

TEST_F(raw_to_tiff_test, answers_and_converts) {
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_NE(m_output.find("Usage: raw-to-tiff"), std::string::npos) << m_output;
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(m_output, "raw-to-tiff " PROGRAM_VERSION "\n");
    EXPECT_EQ(run({m_raw, m_older}), 0);
    EXPECT_EQ(m_output + m_errors, "");
    EXPECT_TRUE(read_file(m_older).starts_with("II*"));
    EXPECT_TRUE(fs::is_empty(m_temporary));
}

TEST_F(raw_to_tiff_test, says_what_is_wrong) {
    write_file(path_of("empty.cr2"), "");
    write_file(path_of("text.crw"), "Dear diary, today I was mistaken for a picture.\n");
    write_file(path_of("short.cr2"), read_file(m_raw).substr(0, 100'000));
    fs::create_directory(path_of("folder.cr2"));
    fs::copy_file(m_raw, path_of("locked.cr2"));
    fs::permissions(path_of("locked.cr2"), fs::perms::none);
    ASSERT_EQ(::mkfifo(path_of("pipe.cr2").c_str(), 0600), 0);
    // The superuser gives up the right to ignore permissions; nobody else has it.
    const std::string locked =
        ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search" : "";
    const std::string unspeakable = ": the name is not UTF-8, holds a backslash, or names no file";
    expect_failure(2, {m_raw}, "", "TIFF is required");
    expect_failure(2, {"", path_of("new.tif")}, "", "RAW: the name is empty");
    expect_failure(10, {path_of("none/a.cr2"), m_older}, path_of("none/a.cr2: "), "no such file");
    expect_failure(11, {m_older, path_of("new.tif")}, m_older + ": ", "not a .cr2 or .crw file");
    expect_failure(11, {path_of("folder.cr2"), m_older}, path_of("folder.cr2: "), "it is a folder");
    expect_failure(11, {path_of("empty.cr2"), m_older}, path_of("empty.cr2: "), "the file is empty");
    expect_failure(11, {path_of("text.crw"), m_older}, path_of("text.crw: "), "no Canon raw picture in it");
    expect_failure(11, {path_of("short.cr2"), m_older}, path_of("short.cr2: "), "end early");
    expect_failure(11, {path_of("pipe.cr2"), m_older}, path_of("pipe.cr2: "), "not a regular file");
    expect_failure(11, {path_of("locked.cr2"), m_older}, path_of("locked.cr2: "), "Permission denied",
                   locked);
    expect_failure(11, {path_of("a\\b.cr2"), m_older}, path_of("a\\b.cr2") + unspeakable, "");
    expect_failure(11, {m_raw, path_of("\xFC.tif")}, path_of("\xFC.tif") + unspeakable, "");
    expect_failure(11, {m_raw, path_of("folder.cr2")}, m_raw + ": ", "Is a directory");
    expect_failure(11, {m_raw, path_of("none/new.tif")}, m_raw + ": ",
                   "none/new.tif: No such file or directory");
    expect_failure(11, {m_raw, m_older}, m_raw + ": ", m_older + ": File too large", "ulimit -f 64;");
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
