#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

TEST(input_path, only_a_file_out_of_reach_is_not_found) {
    const scratch_folder scratch;
    const fs::path& folder = scratch.inq_path();
    write_file(folder / "plain", "x");
    fs::create_directory(folder / "folder");
    fs::create_symlink("circle", folder / "circle");
    fs::create_symlink("nowhere", folder / "dangling");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    struct row {
        fs::path path;
        bool is_not_found;
        const char* reason;
    };
    const row rows[] = {
        {folder / "missing", true, "cannot open it: No such file or directory"},
        {folder / "plain" / "below", true, "cannot open it: Not a directory"},
        {folder / "circle", true, "cannot open it: Too many levels of symbolic links"},
        {folder / "dangling", true, "cannot open it: No such file or directory"},
        {folder / std::string(300, 'a'), true, "cannot open it: File name too long"},
        {"", true, "cannot open it: No such file or directory"},
        {folder / "folder", false, "it is a folder"},
        {folder / "pipe", false, "it is not a regular file"},
        {"/dev/zero", false, "it is not a regular file"},
        {folder / "plain", false, "no Canon raw picture in it"},
    };
    for (const row& row : rows) {
        const conversion_run run = convert(row.path, folder / "out.tif");
        EXPECT_NE(run.code, eds_ok) << row.path;
        EXPECT_EQ(run.code == eds_file_not_found, row.is_not_found) << row.path;
        EXPECT_EQ(run.reason, row.reason) << row.path;
    }
}

} // namespace
