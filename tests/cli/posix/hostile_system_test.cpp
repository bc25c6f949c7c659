#include "tests/cli/program_fixture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using hostile_system_test = program_fixture;

TEST_F(hostile_system_test, hands_over_names_that_the_library_cannot_hold) {
    for (const char* name : {"back\\slash.cr2", "latin1 \xFC.cr2", "surrogate \xED\xA0\x80.cr2"}) {
        const std::string path = path_of(name);
        const std::string line = path + ": the name is not UTF-8, holds a backslash, or names no file";
        expect_failure({m_raw, path}, 11, line, "");
        fs::copy_file(m_raw, path);
        expect_failure({path, m_tiff}, 11, line, "");
    }
}

TEST_F(hostile_system_test, has_a_pipe_without_a_writer) {
    const std::string pipe = path_of("pipe.cr2");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expect_failure({pipe, m_tiff}, 11, pipe, "not a regular file");
    expect_failure({m_raw, pipe}, 11, m_raw, "not a regular file");
}

TEST_F(hostile_system_test, forbids_reading) {
    // The superuser gives up the right to ignore permissions; nobody else has it.
    const std::string prefix =
        ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search" : "";
    fs::permissions(m_raw, fs::perms::none);
    expect_failure({m_raw, m_tiff}, 11, m_raw, "Permission denied", prefix);
}

TEST_F(hostile_system_test, limits_the_size_of_files) {
    expect_failure({m_raw, m_tiff}, 11, m_raw, m_tiff + ": File too large", "ulimit -f 64;");
}

TEST_F(hostile_system_test, has_a_full_disk) {
    if (std::system("unshare --mount true") != 0)
        GTEST_SKIP() << "only the superuser can make a small disk";
    const std::string disk = path_of("disk");
    fs::create_directory(disk);
    // Prints what the disk holds at the end: nothing.
    const std::string script =
        R"(mount -t tmpfs -o size=64k none "$0" && "$@"; code=$?; ls -A "$0"; exit $code)";
    const std::string prefix = "unshare --mount sh -c '" + script + "' " + disk;
    expect_failure({m_raw, disk + "/new.tif"}, 11, m_raw, "new.tif: No space left on device", prefix);
}

} // namespace
