#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/files/ZFile.h"
#include "tests/support/files_fixture.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <windows.h>

namespace fs = std::filesystem;

namespace {

class windows_file_operations : public files_fixture {
protected:
    // An operation that leaves a handle open would keep the file from its owner.
    void TearDown() override { EXPECT_EQ(count_handles(), m_n_handles); }

private:
    static DWORD count_handles() {
        DWORD count = 0;
        ::GetProcessHandleCount(::GetCurrentProcess(), &count);
        return count;
    }

    DWORD m_n_handles = count_handles();
};

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

TEST_F(windows_file_operations, what_is_held_open_stays_where_it_is) {
    write("held", "x");
    const std::ifstream holder(path("held"));
    EXPECT_FALSE(ZFile::delete_file(file("held")));
    EXPECT_EQ(errno, EACCES);
    EXPECT_FALSE(ZFile(file("held")).rename_to(file("taken")));
    EXPECT_EQ(list(), "held ");
}

TEST_F(windows_file_operations, a_read_only_file_can_be_read_and_copied_but_not_deleted) {
    write("a", "x");
    fs::permissions(path("a"), fs::perms::owner_write, fs::perm_options::remove);
    EXPECT_TRUE(ZFile::inq_can_read(file("a")));
    EXPECT_TRUE(ZFile(file("a")).copy_to(file("b")));
    EXPECT_FALSE(ZFile::delete_file(file("a")));
    EXPECT_EQ(errno, EACCES);
    EXPECT_TRUE(ZFile::delete_file(file("b")));
    EXPECT_EQ(list(), "a ");
    fs::permissions(path("a"), fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(windows_file_operations, letter_case_is_kept_but_means_nothing) {
    write("a.cr2", "x");
    EXPECT_TRUE(ZFile::inq_exists(file("A.CR2")));
    EXPECT_FALSE(ZFile(file("a.cr2")).copy_to(file("A.CR2")));
    EXPECT_TRUE(ZFile(file("a.cr2")).move_to(file("A.CR2"), true));
    EXPECT_EQ(read("A.CR2"), "x");
}

TEST_F(windows_file_operations, the_root_of_a_drive_is_there_and_cannot_be_made) {
    const ZFileLocation root(UTF16("C:\\"), true);
    EXPECT_TRUE(ZFile::inq_exists(root));
    EXPECT_TRUE(ZFile::inq_is_folder(root));
    EXPECT_THROW(ZFile::create_folder(root), ZCrtErrorException); // asked for as "C:"
    EXPECT_FALSE(ZFile::delete_file(root));
}

TEST_F(windows_file_operations, devices_are_no_files) {
    const ZFileLocation device(UTF16("NUL"), false);
    EXPECT_FALSE(ZFile::inq_is_file(device));
    EXPECT_FALSE(ZFile(device).copy_to(file("a")));
    EXPECT_EQ(list(), "");
}

TEST_F(windows_file_operations, paths_may_be_long) {
    const std::string name(200, 'a');
    const ZFileLocation inner = folder(name + '/' + name);
    ZFile::create_folder(folder(name));
    ZFile::create_folder(inner);
    EXPECT_TRUE(ZFile::inq_is_folder(inner));
    write("a", "x");
    ZFile moved(file("a"));
    EXPECT_TRUE(moved.copy_to(file(name + '/' + name + "/b")));
    EXPECT_TRUE(moved.inq_same_contents(file(name + '/' + name + "/b")));
    EXPECT_TRUE(moved.rename_to(file(name + '/' + name + "/c")));
    EXPECT_TRUE(moved.inq_is_file() && moved.inq_can_write());
    EXPECT_TRUE(moved.delete_file());
    EXPECT_FALSE(moved.inq_exists());
}

} // namespace
