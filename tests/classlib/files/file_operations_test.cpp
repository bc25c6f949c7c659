#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "classlib/files/ZFile.h"
#include "classlib/files/ZTmpPath.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/files_fixture.h"
#include "tests/support/shown_text.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <fstream>
#include <gtest/gtest.h>
#include <tuple>

namespace {

using contents_t = std::optional<std::string>;

class file_operations : public files_fixture {
protected:
    // Makes a file with these contents, or sees to it that there is none.
    void put(const char* name, const contents_t& contents) const {
        if (contents)
            write(name, *contents);
        else
            std::filesystem::remove(path(name));
    }
};

// Bytes without a pattern that a block size would hide.
std::string bytes(std::size_t n) {
    std::string result(n, '\0');
    for (std::size_t i = 0; i < n; ++i)
        result[i] = static_cast<char>(i % 251);
    return result;
}

TEST_F(file_operations, queries_and_deletion) {
    write("file", "x");
    make_folder("folder");
    using row_t = std::tuple<ZFileLocation, bool, bool, bool>;
    const row_t rows[] = {{file("file"), true, false, true},     {folder("folder"), true, true, false},
                          {file("folder"), true, true, false},   {file("missing"), false, false, false},
                          {file("file/x"), false, false, false}, {ZFileLocation(), false, false, false}};
    for (const auto& [location, exists, is_folder, is_file] : rows) {
        SCOPED_TRACE(plain(location.inq_path()));
        const ZFile asked(location);
        EXPECT_TRUE(asked.inq_exists() == exists && asked.inq_is_folder() == is_folder);
        EXPECT_TRUE(asked.inq_is_file() == is_file && asked.inq_can_read() == is_file);
        EXPECT_EQ(asked.inq_can_write(), is_file);
    }
    EXPECT_TRUE(ZFile::inq_exists(folder("file"))); // the question leaves out the closing separator
    std::ifstream holder(path("file"));
    EXPECT_FALSE(ZFile::inq_can_read(file("file")));
    EXPECT_FALSE(ZFile::inq_can_write(file("file")));
    holder.close();
    EXPECT_TRUE(ZFile(file("file")).delete_file());
    for (const ZFileLocation& no_file : {file("file"), file("folder"), folder("folder"), ZFileLocation()}) {
        errno = 0;
        EXPECT_FALSE(ZFile::delete_file(no_file)) << plain(no_file.inq_path());
        EXPECT_NE(errno, 0) << plain(no_file.inq_path());
    }
    EXPECT_EQ(list(), "folder ");
}

TEST_F(file_operations, copying_and_comparing) {
    using row_t = std::tuple<contents_t, contents_t, const char*, contents_t>;
    const row_t rows[] = {{"", {}, "b", ""},
                          {bytes(65536), bytes(70000), "b", bytes(65536)},
                          {bytes(65537), "short", "b", bytes(65537)},
                          {"new", {}, "no/b", {}},
                          {{}, "old", "b", {}}}; // a target goes before its source is looked for
    for (const auto& [source, old_target, target, new_target] : rows) {
        SCOPED_TRACE(&source - &std::get<0>(rows[0]));
        put("a", source);
        put("b", old_target);
        EXPECT_EQ(ZFile(file("a")).copy_to(file(target)), new_target.has_value());
        EXPECT_TRUE(read(target) == new_target && read("a") == source);
        EXPECT_EQ(ZFile(file("a")).inq_same_contents(file(target)), new_target.has_value());
    }
    for (const auto& [a, b] : {std::pair(bytes(65536), bytes(65537)), {bytes(65536) + 'x', bytes(65537)}}) {
        write("a", a);
        write("b", b);
        EXPECT_FALSE(ZFile(file("a")).inq_same_contents(file("b")));
        EXPECT_FALSE(ZFile(file("b")).inq_same_contents(file("a")));
    }
    ZFile::delete_file(file("b"));
    write("a", "a");
    make_folder("folder");
    EXPECT_FALSE(ZFile(file("a")).copy_to(file("folder/../a")));
    EXPECT_THROW(ZFile(file("a")).move_to(file("folder/../a"), true), ZFileException);
    EXPECT_FALSE(ZFile(file("a")).copy_to(file("folder")));
    EXPECT_FALSE(ZFile(file("folder")).copy_to(file("b")));
    EXPECT_FALSE(ZFile(file("a")).copy_to(ZFileLocation()));
    EXPECT_FALSE(ZFile(ZFileLocation()).copy_to(file("b")));
    EXPECT_EQ(list(), "a folder ");
    EXPECT_EQ(read("a"), "a");
}

TEST_F(file_operations, renaming_and_moving) {
    // A rename fails like a move that may not overwrite.
    using row_t = std::tuple<ZFileLocation, ZFileLocation, bool, bool, const char*>;
    const row_t rows[] = {{file("a"), file("c"), false, true, "b c folder "},
                          {file("a"), file("b"), false, false, "a b folder "},
                          {file("a"), file("b"), true, true, "b folder "},
                          {file("a"), file("a"), true, false, "a b folder "},
                          {file("a"), file("folder"), false, false, "a b folder "},
                          {file("a"), file("no/a"), true, false, "a b folder "},
                          {file("a"), ZFileLocation(), true, false, "a b folder "},
                          {ZFileLocation(), file("c"), false, false, "a b folder "},
                          {file("missing"), file("b"), true, false, "a folder "}};
    make_folder("folder");
    for (const auto& [source, target, overwrite, is_moved, left] : rows) {
        SCOPED_TRACE(testing::Message() << "row " << &source - &std::get<0>(rows[0]));
        put("a", "from a");
        put("b", "from b");
        put("c", {});
        ZFile moved(source);
        EXPECT_TRUE(is_moved || !moved.rename_to(target));
        try {
            EXPECT_TRUE(moved.move_to(target, overwrite) && is_moved);
            EXPECT_EQ(moved.inq_location(), target);
            EXPECT_EQ(read(plain(target.inq_name())), "from a");
        } catch (const ZFileException& exception) {
            EXPECT_FALSE(is_moved);
            EXPECT_EQ(exception.inq_code(), fileerr_rename);
            EXPECT_EQ(exception.inq_file(), source);
            EXPECT_EQ(moved.inq_location(), source);
        }
        EXPECT_EQ(list(), left);
    }
    EXPECT_TRUE(ZFile(file("a")).rename_to(file("folder/c")));
    EXPECT_TRUE(ZFile(file("folder")).rename_to(file("renamed")));
    EXPECT_EQ(read("renamed/c"), "from a");
}

TEST_F(file_operations, creating_folders) {
    write("file", "x");
    ZFile(file("named/ignored.txt")).create_folder();
    write("named/inside", "x");
    ZFile::create_folder(folder("named"));
    ZFile::create_folder(folder("file"));
    EXPECT_EQ(list(), "file named ");
    EXPECT_TRUE(ZFile::inq_is_folder(folder("file")));
    EXPECT_EQ(read("named/inside"), "x");
    EXPECT_THROW(ZFile::create_folder(ZFileLocation()), ZFileException);
    for (const char* const nowhere : {"bare-name", "\\", "no\\folder\\"}) // a root without its separator
        EXPECT_THROW(ZFile::create_folder(ZFileLocation(nowhere, false)), ZCrtErrorException) << nowhere;
}

TEST_F(file_operations, running_out_of_memory_changes_nothing) {
    const ZFileLocation b = file("b");
    ZFile a(file("a"));
    write("a", "new");
    write("b", "old");
    for (int n = 1; runs_out_of_memory(n, [&] { EXPECT_TRUE(a.copy_to(b)); }); ++n)
        EXPECT_EQ(read("b"), "old") << n;
    EXPECT_EQ(read("b"), "new");
    ZFile::delete_file(b);
    for (int n = 1; runs_out_of_memory(n, [&] { EXPECT_TRUE(a.rename_to(b)); }); ++n)
        EXPECT_TRUE(list() == "a " && a.inq_location() == file("a")) << n;
    EXPECT_EQ(list(), "b ");
}

TEST_F(file_operations, temporary_paths_are_fresh_names_whose_file_goes_when_told) {
    const temporary_folder_setting setting(path(""));
    for (const bool is_told : {false, true}) {
        std::string name;
        {
            ZTmpPath made("KW-", ".tiff");
            name = plain(made.inq_path().inq_name());
            const std::string random = name.substr(3, 20);
            EXPECT_EQ(name, "KW-" + random + ".tiff");
            EXPECT_EQ(random.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"), std::string::npos);
            EXPECT_EQ(plain(made.inq_path().inq_folder_path()), plain(folder("").inq_folder_path()));
            EXPECT_FALSE(made.delete_file());
            if (is_told)
                made.set_delete_on_destroy();
            write(name, "x");
            EXPECT_FALSE(ZTmpPath("KW-", ".tiff").inq_path() == made.inq_path());
        }
        EXPECT_EQ(std::filesystem::exists(path(name)), !is_told);
    }
    EXPECT_EQ(plain(ZTmpPath("").inq_path().inq_name()).substr(20), ".tmp");
}

} // namespace
