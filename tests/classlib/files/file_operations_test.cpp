#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "classlib/files/ZFile.h"
#include "classlib/files/ZTmpPath.h"
#include "tests/support/files_fixture.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <cstddef>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <regex>
#include <string>

namespace {

class file_operations : public files_fixture {};

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
    struct row_t {
        const char* what;
        ZFileLocation location;
        bool exists;
        bool is_folder;
        bool is_file;
    };
    ZFileLocation nameless = file("file");
    nameless.name_to_folder();
    const row_t rows[] = {{"file", file("file"), true, false, true},
                          {"folder", folder("folder"), true, true, false},
                          {"folder without separator", file("folder"), true, true, false},
                          {"missing", file("missing"), false, false, false},
                          {"missing folder", folder("missing"), false, false, false},
                          {"below a file", file("file/x"), false, false, false},
                          {"nowhere", ZFileLocation(), false, false, false}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.what);
        const ZFile asked(row.location);
        EXPECT_EQ(asked.inq_exists(), row.exists);
        EXPECT_EQ(asked.inq_is_folder(), row.is_folder);
        EXPECT_EQ(asked.inq_is_file(), row.is_file);
    }
    EXPECT_TRUE(ZFile::inq_exists(nameless)); // asked without its closing separator
}

TEST_F(file_operations, a_file_is_free_while_nobody_has_it_open) {
    write("file", "x");
    make_folder("folder");
    EXPECT_TRUE(ZFile(file("file")).inq_can_read());
    EXPECT_TRUE(ZFile(file("file")).inq_can_write());
    EXPECT_TRUE(ZFile::inq_can_open(file("file"), 0x40000000));
    {
        const std::ifstream holder(path("file"));
        EXPECT_FALSE(ZFile::inq_can_read(file("file")));
        EXPECT_FALSE(ZFile::inq_can_write(file("file")));
    }
    EXPECT_TRUE(ZFile::inq_can_write(file("file")));
    for (const ZFileLocation& location :
         {file("missing"), folder("folder"), file("no/file"), ZFileLocation()}) {
        EXPECT_FALSE(ZFile::inq_can_read(location)) << plain(location.inq_path());
        EXPECT_FALSE(ZFile::inq_can_write(location)) << plain(location.inq_path());
    }
    EXPECT_EQ(list(), "file folder ");
    EXPECT_EQ(read("file"), "x");
}

TEST_F(file_operations, deleting) {
    write("file", "x");
    make_folder("folder");
    EXPECT_FALSE(ZFile::delete_file(folder("folder")));
    EXPECT_FALSE(ZFile::delete_file(file("folder")));
    EXPECT_TRUE(ZFile(file("file")).delete_file());
    errno = 0;
    EXPECT_FALSE(ZFile::delete_file(file("file")));
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_FALSE(ZFile::delete_file(ZFileLocation()));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(list(), "folder ");
}

TEST_F(file_operations, copying) {
    struct row_t {
        const char* what;
        std::optional<std::string> source;
        std::optional<std::string> old_target;
        const char* target;
        bool is_copied;
        std::optional<std::string> new_target;
    };
    const row_t rows[] = {
        {"empty", "", {}, "b", true, ""},
        {"a full block", bytes(65536), {}, "b", true, bytes(65536)},
        {"one byte more", bytes(65537), {}, "b", true, bytes(65537)},
        {"many blocks", bytes(300000), {}, "b", true, bytes(300000)},
        {"onto a longer one", "short", bytes(70000), "b", true, "short"},
        {"onto a shorter one", bytes(70000), "short", "b", true, bytes(70000)},
        {"from a missing one", {}, "old", "b", false, {}},
        {"into a missing folder", "new", {}, "no/b", false, {}},
    };
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.what);
        ZFile::delete_file(file("a"));
        ZFile::delete_file(file("b"));
        if (row.source)
            write("a", *row.source);
        if (row.old_target)
            write("b", *row.old_target);
        const ZFile source(file("a"));
        EXPECT_EQ(source.copy_to(file(row.target)), row.is_copied);
        EXPECT_TRUE(read(row.target) == row.new_target);
        EXPECT_TRUE(read("a") == row.source);
        EXPECT_EQ(source.inq_location(), file("a"));
    }
    EXPECT_FALSE(ZFile(file("a")).copy_to(ZFileLocation()));
    EXPECT_FALSE(ZFile(ZFileLocation()).copy_to(file("a")));
    EXPECT_EQ(list(), "") << "a target goes before its source is looked for";
}

TEST_F(file_operations, a_folder_is_neither_copied_nor_replaced_by_a_copy) {
    make_folder("folder");
    write("folder/x", "x");
    write("a", "a");
    EXPECT_FALSE(ZFile(file("folder")).copy_to(file("b")));
    EXPECT_FALSE(ZFile(file("a")).copy_to(file("folder")));
    EXPECT_EQ(list(), "a folder ");
    EXPECT_EQ(read("folder/x"), "x");
}

TEST_F(file_operations, a_file_survives_being_its_own_target) {
    make_folder("folder");
    write("a", "a");
    for (const char* const spelling : {"a", "./a", "folder/../a"}) {
        SCOPED_TRACE(spelling);
        ZFile a(file("a"));
        EXPECT_FALSE(a.copy_to(file(spelling)));
        EXPECT_THROW(a.move_to(file(spelling), true), ZFileException);
        EXPECT_EQ(read("a"), "a");
    }
}

TEST_F(file_operations, comparing_contents) {
    std::string changed_at_the_end = bytes(65537);
    changed_at_the_end.back() ^= 1;
    struct row_t {
        const char* what;
        std::optional<std::string> a;
        std::optional<std::string> b;
        bool is_same;
    };
    const row_t rows[] = {{"empty", "", "", true},
                          {"short", "abc", "abc", true},
                          {"a full block", bytes(65536), bytes(65536), true},
                          {"one byte more", bytes(65537), bytes(65537), true},
                          {"last byte", bytes(65537), changed_at_the_end, false},
                          {"first byte", "abc", "xbc", false},
                          {"prefix", "ab", "abc", false},
                          {"a block is a prefix", bytes(65536), bytes(65537), false},
                          {"one missing", {}, "abc", false},
                          {"other missing", "abc", {}, false}};
    for (const row_t& row : rows) {
        ZFile::delete_file(file("a"));
        ZFile::delete_file(file("b"));
        if (row.a)
            write("a", *row.a);
        if (row.b)
            write("b", *row.b);
        EXPECT_EQ(ZFile(file("a")).inq_same_contents(file("b")), row.is_same) << row.what;
    }
    EXPECT_TRUE(ZFile(file("a")).inq_same_contents(file("a")));
    EXPECT_FALSE(ZFile(file("a")).inq_same_contents(ZFileLocation()));
}

TEST_F(file_operations, renaming_never_replaces) {
    write("a", "a");
    write("b", "b");
    make_folder("folder");
    make_folder("other");
    ZFile a(file("a"));
    for (const char* const target : {"a", "b", "folder", "no/a"}) {
        EXPECT_FALSE(a.rename_to(file(target))) << target;
        EXPECT_EQ(a.inq_location(), file("a")) << target;
    }
    EXPECT_FALSE(a.rename_to(ZFileLocation()));
    EXPECT_FALSE(ZFile(ZFileLocation()).rename_to(file("c")));
    EXPECT_FALSE(ZFile(file("missing")).rename_to(file("c")));
    EXPECT_FALSE(ZFile(file("folder")).rename_to(file("other")));
    EXPECT_EQ(list(), "a b folder other ");
    EXPECT_EQ(read("a"), "a");
    EXPECT_EQ(read("b"), "b");

    EXPECT_TRUE(a.rename_to(file("folder/c")));
    EXPECT_EQ(a.inq_location(), file("folder/c"));
    EXPECT_TRUE(a.inq_exists());
    EXPECT_EQ(read("folder/c"), "a");
    EXPECT_TRUE(ZFile(file("folder")).rename_to(file("renamed")));
    EXPECT_EQ(list(), "b other renamed ");
}

TEST_F(file_operations, moving) {
    struct row_t {
        const char* what;
        const char* source;
        const char* target;
        bool overwrite;
        bool is_moved;
        const char* left;
    };
    constexpr row_t rows[] = {{"to a free name", "a", "c", false, true, "b c "},
                              {"to a free name, overwriting", "a", "c", true, true, "b c "},
                              {"onto another", "a", "b", false, false, "a b "},
                              {"onto another, overwriting", "a", "b", true, true, "b "},
                              {"into a missing folder", "a", "no/a", true, false, "a b "},
                              {"a missing one", "x", "b", false, false, "a b "},
                              {"a missing one, overwriting", "x", "b", true, false, "a "}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.what);
        ZFile::delete_file(file("c"));
        write("a", "from a");
        write("b", "from b");
        ZFile moved(file(row.source));
        try {
            EXPECT_TRUE(moved.move_to(file(row.target), row.overwrite));
            EXPECT_TRUE(row.is_moved);
            EXPECT_EQ(moved.inq_location(), file(row.target));
            EXPECT_EQ(read(row.target), "from a");
        } catch (const ZFileException& exception) {
            EXPECT_FALSE(row.is_moved);
            EXPECT_EQ(exception.inq_code(), fileerr_rename);
            EXPECT_EQ(exception.inq_file(), file(row.source));
            EXPECT_EQ(moved.inq_location(), file(row.source));
        }
        EXPECT_EQ(list(), row.left);
    }
}

TEST_F(file_operations, creating_folders) {
    ZFile::create_folder(folder("new"));
    ZFile(file("named/ignored.txt")).create_folder();
    write("new/inside", "x");
    ZFile::create_folder(folder("new"));
    write("file", "x");
    ZFile::create_folder(folder("file"));
    EXPECT_EQ(list(), "file named new ");
    EXPECT_TRUE(ZFile::inq_is_folder(folder("file")));
    EXPECT_TRUE(ZFile::inq_is_folder(folder("named")));
    EXPECT_EQ(read("new/inside"), "x");

    try {
        ZFile::create_folder(folder("no/new"));
        ADD_FAILURE() << "a folder was made without its parent";
    } catch (const ZCrtErrorException& exception) {
        EXPECT_EQ(exception.inq_code(), ENOENT);
        EXPECT_EQ(exception.inq_file(), file("no/new"));
    }
    try {
        ZFile::create_folder(ZFileLocation());
        ADD_FAILURE() << "a folder was made nowhere";
    } catch (const ZFileException& exception) {
        EXPECT_EQ(exception.inq_code(), fileerr_no_location);
        EXPECT_TRUE(exception.inq_file().inq_empty());
    }
    EXPECT_THROW(ZFile::create_folder(ZFileLocation(wide("bare-name"), false)), ZCrtErrorException);
}

TEST_F(file_operations, running_out_of_memory_changes_nothing) {
    const ZFileLocation b = file("b");
    for (int n = 1;; ++n) {
        write("a", "new");
        write("b", "old");
        const ZFile a(file("a"));
        if (!runs_out_of_memory(n, [&] { EXPECT_TRUE(a.copy_to(b)); }))
            break;
        EXPECT_EQ(list(), "a b ") << n;
        EXPECT_EQ(read("b"), "old") << n;
    }
    EXPECT_EQ(read("b"), "new");
    ZFile::delete_file(b);
    ZFile a(file("a"));
    for (int n = 1; runs_out_of_memory(n, [&] { EXPECT_TRUE(a.rename_to(b)); }); ++n) {
        EXPECT_EQ(list(), "a ") << n;
        EXPECT_EQ(a.inq_location(), file("a")) << n;
    }
    EXPECT_EQ(list(), "b ");
}

class temporary_paths : public files_fixture {};

TEST_F(temporary_paths, are_fresh_names_in_the_temporary_folder) {
    const temporary_folder_setting setting(path(""));
    const ZTmpPath raw(UTF16("KW-"), UTF16(".tiff"));
    EXPECT_EQ(plain(raw.inq_path().inq_folder_path()), plain(folder("").inq_folder_path()));
    EXPECT_TRUE(std::regex_match(plain(raw.inq_path().inq_name()), std::regex("KW-[0-9A-Z]{20}\\.tiff")));
    const ZTmpPath other{ZUString()};
    EXPECT_TRUE(std::regex_match(plain(other.inq_path().inq_name()), std::regex("[0-9A-Z]{20}\\.tmp")));
    EXPECT_FALSE(ZFile::inq_exists(raw.inq_path()));
    EXPECT_FALSE(raw.delete_file());
    EXPECT_EQ(list(), "");

    write(plain(raw.inq_path().inq_name()), "taken");
    const ZTmpPath next(UTF16("KW-"), UTF16(".tiff"));
    EXPECT_FALSE(next.inq_path() == raw.inq_path());
    EXPECT_TRUE(raw.delete_file());
    EXPECT_EQ(list(), "");
}

TEST_F(temporary_paths, delete_their_file_only_when_told) {
    const temporary_folder_setting setting(path(""));
    for (const bool is_deleted : {false, true}) {
        {
            ZTmpPath kept(UTF16("x"));
            if (is_deleted)
                kept.set_delete_on_destroy(true);
            write(plain(kept.inq_path().inq_name()), "x");
        }
        EXPECT_EQ(list_folder(path("")).size(), 1U) << is_deleted;
    }
}

} // namespace
