#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "classlib/files/ZFile.h"
#include "classlib/files/ZTmpPath.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/files_fixture.h"
#include "tests/support/shown_text.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <string>
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

TEST_F(file_operations, status_queries) {
    write("file", "x");
    make_folder("folder");
    using row_t = std::tuple<ZFileLocation, bool, bool, bool>;
    const row_t rows[] = {{file("file"), true, false, true},     {folder("folder"), true, true, false},
                          {file("folder"), true, true, false},   {file("missing"), false, false, false},
                          {file("file/x"), false, false, false}, {ZFileLocation(), false, false, false}};
    for (const auto& [location, exists, is_folder, is_file] : rows) {
        SCOPED_TRACE(plain(location.inq_path()));
        const ZFile asked(location);
        EXPECT_EQ(asked.inq_exists(), exists);
        EXPECT_EQ(asked.inq_is_folder(), is_folder);
        EXPECT_EQ(asked.inq_is_file(), is_file);
        EXPECT_EQ(asked.inq_can_read(), is_file);
        EXPECT_EQ(asked.inq_can_write(), is_file);
    }
    EXPECT_TRUE(ZFile::inq_exists(folder("file"))); // the question leaves out the closing separator
    const std::ifstream holder(path("file"));
    EXPECT_FALSE(ZFile::inq_can_read(file("file")));
    EXPECT_FALSE(ZFile::inq_can_write(file("file")));
    EXPECT_EQ(list(), "file folder ");
}

TEST_F(file_operations, only_files_are_deleted) {
    write("file", "x");
    make_folder("folder");
    EXPECT_TRUE(ZFile(file("file")).delete_file());
    for (const ZFileLocation& location : {file("folder"), folder("folder"), file("file"), ZFileLocation()}) {
        errno = 0;
        EXPECT_FALSE(ZFile::delete_file(location)) << plain(location.inq_path());
        EXPECT_NE(errno, 0) << plain(location.inq_path());
    }
    EXPECT_EQ(list(), "folder ");
}

TEST_F(file_operations, copying_and_comparing) {
    using row_t = std::tuple<contents_t, contents_t, const char*, contents_t>;
    const row_t rows[] = {{"", {}, "b", ""},
                          {bytes(65536), {}, "b", bytes(65536)},
                          {"short", bytes(70000), "b", "short"},
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
        if (new_target && !new_target->empty()) {
            put("b", new_target->substr(0, new_target->size() - 1)); // the common part may be whole blocks
            EXPECT_FALSE(ZFile(file("a")).inq_same_contents(file("b")));
            EXPECT_FALSE(ZFile(file("b")).inq_same_contents(file("a")));
            put("b", new_target->substr(0, new_target->size() - 1) + '!');
            EXPECT_FALSE(ZFile(file("a")).inq_same_contents(file("b")));
        }
    }
    write("a", "a");
    make_folder("folder");
    for (const char* const target : {"a", "folder/../a"}) {
        EXPECT_FALSE(ZFile(file("a")).copy_to(file(target)));
        EXPECT_THROW(ZFile(file("a")).move_to(file(target), true), ZFileException);
    }
    EXPECT_FALSE(ZFile(file("a")).copy_to(file("folder")));
    EXPECT_FALSE(ZFile(file("folder")).copy_to(file("b")));
    EXPECT_FALSE(ZFile(file("a")).copy_to(ZFileLocation()));
    EXPECT_FALSE(ZFile(ZFileLocation()).copy_to(file("b")));
    EXPECT_EQ(list(), "a folder ");
    EXPECT_EQ(read("a"), "a");
}

TEST_F(file_operations, renaming_never_replaces) {
    write("a", "a");
    write("b", "b");
    make_folder("folder");
    ZFile a(file("a"));
    for (const ZFileLocation& target :
         {file("a"), file("b"), file("folder"), file("no/a"), ZFileLocation()}) {
        EXPECT_FALSE(a.rename_to(target)) << plain(target.inq_path());
        EXPECT_EQ(a.inq_location(), file("a"));
    }
    EXPECT_FALSE(ZFile(ZFileLocation()).rename_to(file("c")));
    EXPECT_FALSE(ZFile(file("missing")).rename_to(file("c")));
    EXPECT_EQ(list(), "a b folder ");
    EXPECT_EQ(read("b"), "b");
    EXPECT_TRUE(a.rename_to(file("folder/c")));
    EXPECT_EQ(a.inq_location(), file("folder/c"));
    EXPECT_EQ(read("folder/c"), "a");
    EXPECT_TRUE(ZFile(file("folder")).rename_to(file("renamed")));
    EXPECT_EQ(list(), "b renamed ");
}

TEST_F(file_operations, moving) {
    using row_t = std::tuple<const char*, const char*, bool, bool, const char*>;
    const row_t rows[] = {{"a", "c", false, true, "b c "},
                          {"a", "b", false, false, "a b "},
                          {"a", "b", true, true, "b "},
                          {"a", "no/a", true, false, "a b "},
                          {"missing", "b", true, false, "a "}};
    for (const auto& [source, target, overwrite, is_moved, left] : rows) {
        SCOPED_TRACE(testing::Message() << source << " to " << target << ", " << overwrite);
        put("a", "from a");
        put("b", "from b");
        put("c", {});
        ZFile moved(file(source));
        try {
            EXPECT_TRUE(moved.move_to(file(target), overwrite) && is_moved);
            EXPECT_EQ(moved.inq_location(), file(target));
            EXPECT_EQ(read(target), "from a");
        } catch (const ZFileException& exception) {
            EXPECT_FALSE(is_moved);
            EXPECT_EQ(exception.inq_code(), fileerr_rename);
            EXPECT_EQ(exception.inq_file(), file(source));
            EXPECT_EQ(moved.inq_location(), file(source));
        }
        EXPECT_EQ(list(), left);
    }
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
    try {
        ZFile::create_folder(folder("no/new"));
        ADD_FAILURE() << "a folder was made without its parent";
    } catch (const ZCrtErrorException& exception) {
        EXPECT_EQ(exception.inq_code(), ENOENT);
        EXPECT_EQ(exception.inq_file(), file("no/new"));
    }
    EXPECT_THROW(ZFile::create_folder(ZFileLocation()), ZFileException);
    for (const char* const no_folder : {"bare-name", "\\"}) // a root is asked for without its separator
        EXPECT_THROW(ZFile::create_folder(ZFileLocation(no_folder, false)), ZCrtErrorException);
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
