#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/files/ZFile.h"
#include "tests/support/files_fixture.h"

#include <cerrno>
#include <fstream>
#include <thread>
#include <windows.h>

namespace fs = std::filesystem;

namespace {

using windows_file_operations = files_fixture;

// Whether it happens within half a minute; asked seldom, for the question itself holds the file for a moment.
bool comes_true(const auto& condition) {
    for (int i = 0; i < 60; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        if (condition())
            return true;
    }
    return false;
}

TEST_F(windows_file_operations, what_another_process_holds_open_is_not_ours_to_open) {
    write("held", "x");
    const std::wstring command = L"cmd /c more >> \"" + path("held").wstring() + L'"';
    FILE* const holder = ::_wpopen(command.c_str(), L"w"); // waits for its input
    EXPECT_TRUE(comes_true([&] { return !ZFile::inq_can_read(file("held")); }));
    EXPECT_FALSE(ZFile::inq_can_write(file("held")));
    ::_pclose(holder);
    EXPECT_TRUE(comes_true([&] { return ZFile::inq_can_write(file("held")); }));
}

TEST_F(windows_file_operations, a_file_that_is_held_open_or_read_only_stays) {
    write("held", "x");
    write("locked", "x");
    fs::permissions(path("locked"), fs::perms::owner_write, fs::perm_options::remove);
    const std::ifstream holder(path("held"));
    for (const char* const name : {"held", "locked"}) {
        EXPECT_FALSE(ZFile::delete_file(file(name)));
        EXPECT_EQ(errno, EACCES);
    }
    EXPECT_FALSE(ZFile(file("held")).rename_to(file("taken")));
    EXPECT_TRUE(ZFile(file("locked")).copy_to(file("copy")) && ZFile::delete_file(file("copy")));
    EXPECT_EQ(list(), "held locked ");
    fs::permissions(path("locked"), fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(windows_file_operations, letter_case_means_nothing) {
    write("a.cr2", "x");
    EXPECT_FALSE(ZFile(file("a.cr2")).copy_to(file("A.CR2")));
    EXPECT_TRUE(ZFile(file("a.cr2")).move_to(file("A.CR2"), true));
    EXPECT_EQ(read("A.CR2"), "x");
}

TEST_F(windows_file_operations, drives_and_devices_are_no_files) {
    const ZFileLocation root(UTF16("C:\\"), true);
    const ZFileLocation device(UTF16("NUL"), false);
    EXPECT_TRUE(ZFile::inq_exists(root) && ZFile::inq_is_folder(root));
    EXPECT_THROW(ZFile::create_folder(root), ZCrtErrorException); // asked for as "C:"
    EXPECT_FALSE(ZFile::delete_file(root));
    EXPECT_FALSE(ZFile::inq_is_file(device) || ZFile(device).copy_to(file("a")));
    EXPECT_EQ(list(), "");
}

TEST_F(windows_file_operations, paths_may_be_long) {
    const std::string name(200, 'a');
    const std::string deep = name + '/' + name;
    ZFile::create_folder(folder(name));
    ZFile::create_folder(folder(deep));
    write("a", "x");
    ZFile moved(file("a"));
    EXPECT_TRUE(moved.copy_to(file(deep + "/b")) && moved.inq_same_contents(file(deep + "/b")));
    EXPECT_TRUE(moved.rename_to(file(deep + "/c")));
    EXPECT_TRUE(moved.inq_is_file() && moved.inq_can_write());
    EXPECT_TRUE(moved.delete_file() && !moved.inq_exists());
}

} // namespace
