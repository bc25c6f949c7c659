#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "classlib/files/ZFile.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/files_fixture.h"
#include "tests/support/shown_text.h"

#include <cerrno>
#include <numeric>
#include <tuple>

namespace {

std::string parts_of(const ZFileLocation& l) {
    return plain(l.inq_volume()) + '|' + plain(l.inq_folder()) + '|' + plain(l.inq_name());
}

TEST(locations, parsing_and_composing) {
    const std::tuple<ZUString, std::string, const char*> rows[] = {
        {R"(C:/photos/a.cr2)", R"(C:|\photos\|a.cr2)", R"(C:\photos)"},
        {R"(C:photos\a.cr2)", R"(C:|photos\|a.cr2)", "C:photos"},
        {R"(//server/a.crw)", R"(\\server|\|a.crw)", R"(\\server\)"},
        {R"(\\server)", R"(\\server||)", R"(\\server)"},
        {UTF16("\u00E9\\\U0001F4F7"), R"(|<E9>\|<D83D><DCF7>)", "<E9>"},
        {R"(\\)", "||", ""}};
    for (const auto& [text, parts, folder_path] : rows) {
        const ZFileLocation location(text, false);
        EXPECT_EQ(parts_of(location), parts);
        EXPECT_EQ(plain(location.inq_folder_path()), folder_path) << parts;
        EXPECT_EQ(location.inq_empty(), parts == "||");
    }
}

TEST(locations, changes) {
    const std::tuple<const char*, void (*)(ZFileLocation & l), const char*> rows[] = {
        {R"(\photos\trip\x)", [](auto& l) { l.folder_to_name(); }, R"(|\photos\|trip)"},
        {R"(photos\x)", [](auto& l) { l.folder_to_name(); }, R"(|photos\|x)"},
        {R"(photos\x)", [](auto& l) { EXPECT_TRUE(l.to_parent_folder()); }, R"(|\|x)"},
        {R"(a\x)", [](auto& l) { EXPECT_FALSE(l.to_parent_folder()); }, R"(|a\|x)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_drive_letter(u'z'); }, R"(z:|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_server("host"); }, R"(\\host|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_server(""); }, R"(|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_folder(l.inq_folder()); }, R"(C:|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.name_to_folder(); }, R"(C:|\a\b.c\|)"},
        {R"(C:\a\b.c)", [](auto& l) { l.add_folder(l.inq_folder()); }, R"(C:|\a\\a\\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.add_tilde(), l.add_plus(); }, R"(C:|\a\|b.c~+)"},
        {R"(\v1.2\a.tar.gz)", [](auto& l) { l.set_extension("tiff"); }, R"(|\v1.2\|a.tar.tiff)"},
        {R"(\v1.2\a)", [](auto& l) { l.set_extension(".tiff"); }, R"(|\v1.2\|a.tiff)"},
    };
    for (const auto& [path, change, parts] : rows) {
        ZFileLocation location(path, false);
        change(location);
        EXPECT_EQ(parts_of(location), parts);
    }
}

TEST(locations, volumes_descriptions_and_equality) {
    ZFileLocation location(R"(\\server\x\a.crw)", false);
    location.set_folder(R"(share\)"); // which needs a separator between the two
    EXPECT_EQ(plain(location.inq_path()), R"(\\server\share\a.crw)");
    EXPECT_EQ(plain(location.inq_folder_path()), R"(\\server\share)");
    EXPECT_EQ(plain(location.inq_description()), R"(a.crw - \\servershare\)");
    EXPECT_EQ(plain(location.inq_server() + location.inq_extension() + location.inq_base_name()),
              "server.crwa");
    const ZFileLocation on_drive(R"(C:\photos\a.crw)", false);
    EXPECT_TRUE(on_drive.inq_server().length() == 0 && on_drive.inq_drive_letter() == u'C');
    EXPECT_TRUE(on_drive == ZFileLocation(R"(c:/PHOTOS/A.CRW)", false));
    for (const char* const other : {R"(D:\photos\a.crw)", R"(C:\photo\a.crw)", R"(C:\photos\b.crw)"})
        EXPECT_FALSE(on_drive == ZFileLocation(other, false)) << other;
}

class file_operations : public files_fixture {};

TEST_F(file_operations, queries_and_deletion) {
    write("file", "x");
    make_folder("folder");
    using row_t = std::tuple<ZFileLocation, bool, bool>;
    for (const auto& [location, is_folder, is_file] : {row_t{file("file"), false, true},
                                                       {folder("folder"), true, false},
                                                       {file("file/x"), false, false},
                                                       {ZFileLocation(), false, false}}) {
        const ZFile asked(location);
        EXPECT_TRUE(asked.inq_exists() == (is_folder || is_file) && asked.inq_is_folder() == is_folder);
        EXPECT_TRUE(asked.inq_is_file() == is_file && asked.inq_can_read() == is_file);
        EXPECT_EQ(asked.inq_can_write(), is_file);
    }
    EXPECT_TRUE(ZFile::inq_exists(folder("file"))); // the question leaves out the closing separator
    std::ifstream holder(path("file"));
    EXPECT_FALSE(ZFile::inq_can_read(file("file")) || ZFile::inq_can_write(file("file")));
    holder.close();
    EXPECT_TRUE(ZFile(file("file")).delete_file());
    for (const ZFileLocation& no_file : {file("file"), folder("folder"), ZFileLocation()}) {
        errno = 0;
        EXPECT_TRUE(!ZFile::delete_file(no_file) && errno != 0) << plain(no_file.inq_path());
    }
    EXPECT_EQ(list(), "folder ");
}

TEST_F(file_operations, copying_and_comparing) {
    std::string block(65536, '\0');
    std::iota(block.begin(), block.end(), '\0'); // no pattern that a smaller block would hide
    for (const auto& [source, old_target] : {std::pair(std::string(), block),
                                             {block, block + "longer"},
                                             {block + 'x', block},
                                             {block, block + 'y'}}) {
        write("a", source);
        write("b", old_target);
        EXPECT_FALSE(ZFile(file("a")).inq_same_contents(file("b")));
        EXPECT_FALSE(ZFile(file("b")).inq_same_contents(file("a")));
        EXPECT_TRUE(ZFile(file("a")).copy_to(file("b")));
        EXPECT_TRUE(read("b") == source && read("a") == source);
        EXPECT_TRUE(ZFile(file("a")).inq_same_contents(file("b")));
    }
    EXPECT_FALSE(ZFile(file("missing")).copy_to(file("b"))); // a target goes before its source is looked for
    make_folder("folder");
    EXPECT_THROW(ZFile(file("a")).move_to(file("folder/../a"), true), ZFileException);
    for (const ZFileLocation& target : {file("folder/../a"), file("folder"), file("no/a"), ZFileLocation()})
        EXPECT_FALSE(ZFile(file("a")).copy_to(target)) << plain(target.inq_path());
    for (const ZFileLocation& source : {file("folder"), ZFileLocation()})
        EXPECT_FALSE(ZFile(source).copy_to(file("b"))) << plain(source.inq_path());
    EXPECT_EQ(list() + *read("a"), "a folder " + block);
}

TEST_F(file_operations, renaming_and_moving) {
    // A rename fails like a move that may not overwrite.
    using row_t = std::tuple<ZFileLocation, ZFileLocation, bool, bool, const char*>;
    const row_t rows[] = {{file("a"), file("b"), false, false, "a b folder "},
                          {file("a"), file("b"), true, true, "b folder "},
                          {file("a"), file("a"), true, false, "a b folder "},
                          {file("a"), ZFileLocation(), true, false, "a b folder "},
                          {ZFileLocation(), file("c"), false, false, "a b folder "},
                          {file("missing"), file("b"), true, false, "a folder "},
                          {file("a"), file("c"), false, true, "b c folder "}};
    make_folder("folder");
    for (const auto& [source, target, overwrite, is_moved, left] : rows) {
        write("a", "from a");
        write("b", "from b");
        ZFile moved(source);
        EXPECT_TRUE(is_moved || !moved.rename_to(target));
        try {
            EXPECT_TRUE(moved.move_to(target, overwrite) && is_moved);
            EXPECT_EQ(read(plain(target.inq_name())), "from a");
        } catch (const ZFileException& exception) {
            EXPECT_FALSE(is_moved);
            EXPECT_EQ(exception.inq_code(), fileerr_rename);
        }
        EXPECT_EQ(moved.inq_location(), is_moved ? target : source) << left;
        EXPECT_EQ(list(), left) << plain(target.inq_path());
    }
}

TEST_F(file_operations, creating_folders) {
    write("file", "x");
    ZFile(file("named/ignored.txt")).create_folder();
    ZFile::create_folder(folder("named"));
    ZFile::create_folder(folder("file"));
    EXPECT_EQ(list(), "file named ");
    EXPECT_TRUE(ZFile::inq_is_folder(folder("file")));
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

} // namespace
