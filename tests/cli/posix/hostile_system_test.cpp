#include "tests/cli/program_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using hostile_system_test = program_fixture;

// The superuser loses the right to ignore permissions; nobody else has it.
words_t without_privileges() {
    if (::geteuid() != 0)
        return {};
    return {"setpriv", "--bounding-set=-dac_override,-dac_read_search"};
}

void permit(const fs::path& path, mode_t mode) {
    fs::permissions(path, static_cast<fs::perms>(mode));
}

TEST_F(hostile_system_test, hands_over_names_that_the_library_cannot_hold) {
    const std::string reason = "the name is not UTF-8, holds a backslash, or names no file";
    for (const std::string name : {"back\\slash.cr2", "latin1 \xFC.cr2", "surrogate \xED\xA0\x80.cr2"}) {
        fs::copy_file(m_raw, path_of(name));
        expect_failure(path_of(name), m_tiff, 11, reason);
    }
    const std::string tiff = path_of("latin1 \xFC.tif");
    const program_run_t program = run({m_raw, tiff});
    EXPECT_EQ(program.exit_code, 11);
    EXPECT_EQ(program.errors, "raw-to-tiff: " + tiff + ": " + reason + "\n");
    EXPECT_FALSE(fs::exists(tiff));
}

TEST_F(hostile_system_test, lets_a_pipe_wait_for_its_writer) {
    ASSERT_EQ(::mkfifo(path_of("pipe.cr2").c_str(), 0600), 0);
    expect_failure(path_of("pipe.cr2"), m_tiff, 11, "not a regular file");
    expect_failure(m_raw, path_of("pipe.cr2"), 11, "not a regular file");
}

TEST_F(hostile_system_test, forbids_reading_and_writing) {
    const std::string reason = "Permission denied";
    const words_t wrapper = without_privileges();
    fs::copy_file(m_raw, path_of("secret.cr2"));
    permit(path_of("secret.cr2"), 0000);
    expect_failure(path_of("secret.cr2"), m_tiff, 11, reason, wrapper);

    permit(m_tiff, 0444);
    expect_failure(m_raw, m_tiff, 11, reason, wrapper);

    permit(m_tiff, 0644);
    permit(m_folder, 0555);
    expect_failure(m_raw, m_tiff, 11, reason, wrapper);
    expect_failure(m_raw, path_of("new.tif"), 11, reason, wrapper);
    permit(m_folder, 0755);
}

TEST_F(hostile_system_test, limits_the_size_of_files) {
    const words_t wrapper = {"sh", "-c", R"(trap '' XFSZ; ulimit -f 64; exec "$0" "$@")"};
    expect_failure(m_raw, m_tiff, 11, m_tiff + ": File too large", wrapper);
}

TEST_F(hostile_system_test, has_a_full_disk) {
    if (run_program({"unshare", "--mount", "true"}).exit_code != 0)
        GTEST_SKIP() << "only the superuser can make a small disk";
    const std::string disk = path_of("disk");
    fs::create_directory(disk);
    // Prints what the disk holds at the end: nothing.
    const char* const script =
        R"(mount -t tmpfs -o size=64k none "$0" && { "$@"; code=$?; ls -A "$0"; exit $code; })";
    const words_t wrapper = {"unshare", "--mount", "sh", "-c", script, disk};
    expect_failure(m_raw, disk + "/new.tif", 11, "new.tif: No space left on device", wrapper);
}

} // namespace
