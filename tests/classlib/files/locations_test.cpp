#include "classlib/files/ZFileLocation.h"
#include "tests/support/shown_text.h"

#include <gtest/gtest.h>
#include <string>

namespace {

ZFileLocation at(const char* path) {
    return {wide(path), false};
}

std::string parts_of(const ZFileLocation& location) {
    return plain(location.inq_volume()) + '|' + plain(location.inq_folder()) + '|' +
           plain(location.inq_name());
}

TEST(locations, parsing_and_composing) {
    struct row_t {
        const char* text;
        const char* parts;
        const char* path;
        const char* folder_path;
    };
    constexpr row_t rows[] = {
        {R"(C:\photos\IMG_0001.CR2)", R"(C:|\photos\|IMG_0001.CR2)", R"(C:\photos\IMG_0001.CR2)",
         R"(C:\photos)"},
        {R"(C:/photos/IMG_0001.CR2)", R"(C:|\photos\|IMG_0001.CR2)", R"(C:\photos\IMG_0001.CR2)",
         R"(C:\photos)"},
        {R"(C:\photos\)", R"(C:|\photos\|)", R"(C:\photos\)", R"(C:\photos)"},
        {R"(C:\photos)", R"(C:|\|photos)", R"(C:\photos)", R"(C:\)"},
        {R"(C:\)", R"(C:|\|)", R"(C:\)", R"(C:\)"},
        {"C:", "C:||", "C:", "C:"},
        {"C:IMG_0001.CR2", "C:||IMG_0001.CR2", "C:IMG_0001.CR2", "C:"},
        {R"(C:photos\a.cr2)", R"(C:|photos\|a.cr2)", R"(C:photos\a.cr2)", "C:photos"},
        {R"(\\server\share\raw\a.crw)", R"(\\server|\share\raw\|a.crw)", R"(\\server\share\raw\a.crw)",
         R"(\\server\share\raw)"},
        {R"(//server/a.crw)", R"(\\server|\|a.crw)", R"(\\server\a.crw)", R"(\\server\)"},
        {R"(\\server)", R"(\\server||)", R"(\\server)", R"(\\server)"},
        {R"(\\)", "||", "", ""},
        {R"(\photos\a.cr2)", R"(|\photos\|a.cr2)", R"(\photos\a.cr2)", R"(\photos)"},
        {R"(photos\a.cr2)", R"(|photos\|a.cr2)", R"(photos\a.cr2)", "photos"},
        {R"(a\b/c.d\e)", R"(|a\b\c.d\|e)", R"(a\b\c.d\e)", R"(a\b\c.d)"},
        {R"(\)", R"(|\|)", R"(\)", R"(\)"},
        {"a.cr2", "||a.cr2", "a.cr2", ""},
        {"", "||", "", ""},
        {nullptr, "||", "", ""},
    };
    for (const row_t& row : rows) {
        SCOPED_TRACE(shown(wide(row.text)));
        const ZFileLocation location = at(row.text);
        EXPECT_EQ(parts_of(location), row.parts);
        EXPECT_EQ(plain(location.inq_path()), row.path);
        EXPECT_EQ(plain(location.inq_folder_path()), row.folder_path);
        EXPECT_EQ(parts_of(ZFileLocation(location.inq_path(), false)), row.parts);
        EXPECT_EQ(location.inq_empty(), row.parts == std::string("||"));
    }
    EXPECT_EQ(parts_of(ZFileLocation(UTF16("\u00E9\\\U0001F4F7"), false)), R"(|<E9>\|<D83D><DCF7>)");
}

TEST(locations, a_text_may_stand_for_a_folder) {
    struct row_t {
        const char* text;
        const char* parts;
    };
    constexpr row_t rows[] = {{R"(C:\photos)", R"(C:|\photos\|)"},
                              {R"(C:\photos\)", R"(C:|\photos\|)"},
                              {"C:photos", R"(C:|photos\|)"},
                              {"C:", "C:||"},
                              {R"(\\server\share)", R"(\\server|\share\|)"},
                              {"", "||"}};
    for (const row_t& row : rows)
        EXPECT_EQ(parts_of(ZFileLocation(wide(row.text), true)), row.parts) << row.text;
}

TEST(locations, volumes) {
    struct row_t {
        const char* text;
        char16_t letter;
        const char* server;
    };
    constexpr row_t rows[] = {{R"(C:\a)", u'C', ""},
                              {"::", u':', ""},
                              {R"(\\server\share\a)", 0, "server"},
                              {R"(\\server)", 0, "server"},
                              {R"(\a)", 0, ""},
                              {"a:b", u'a', ""},
                              {"", 0, ""}};
    for (const row_t& row : rows) {
        EXPECT_EQ(at(row.text).inq_drive_letter(), row.letter) << row.text;
        EXPECT_EQ(plain(at(row.text).inq_server()), row.server) << row.text;
    }
}

TEST(locations, the_extension_is_that_of_the_name) {
    struct row_t {
        const char* name;
        const char* extension;
        const char* base_name;
        const char* as_tiff;
    };
    constexpr row_t rows[] = {{"IMG_0001.CR2", ".CR2", "IMG_0001", "IMG_0001.tiff"},
                              {"archive.tar.gz", ".gz", "archive.tar", "archive.tar.tiff"},
                              {"README", "", "README", "README.tiff"},
                              {".crw", ".crw", "", ".tiff"},
                              {"a.", ".", "a", "a.tiff"},
                              {"", "", "", ".tiff"}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.name);
        ZFileLocation location(wide(R"(C:\v1.2\)") + wide(row.name), false);
        EXPECT_EQ(plain(location.inq_extension()), row.extension);
        EXPECT_EQ(plain(location.inq_base_name()), row.base_name);
        ZFileLocation removed = location;
        removed.remove_extension();
        EXPECT_EQ(parts_of(removed), R"(C:|\v1.2\|)" + std::string(row.base_name));
        ZFileLocation emptied = location;
        emptied.set_extension(ZUString());
        EXPECT_EQ(parts_of(emptied), parts_of(removed));
        for (const char* const extension : {"tiff", ".tiff"}) {
            ZFileLocation changed = location;
            changed.set_extension(wide(extension));
            EXPECT_EQ(parts_of(changed), R"(C:|\v1.2\|)" + std::string(row.as_tiff));
        }
    }
}

TEST(locations, the_innermost_folder) {
    struct row_t {
        const char* folder;
        const char* as_name;
        bool has_parent;
        const char* parent;
    };
    constexpr row_t rows[] = {{R"(\photos\trip\)", R"(|\photos\|trip)", true, R"(|\photos\|x)"},
                              {R"(\photos\)", R"(|\|photos)", true, R"(|\|x)"},
                              {R"(\p\)", R"(|\|p)", true, R"(|\|x)"},
                              {R"(a\b\)", R"(|a\|b)", true, R"(|a\|x)"},
                              {R"(photos\)", R"(|photos\|x)", true, R"(|\|x)"},
                              {R"(a\)", R"(|a\|x)", false, R"(|a\|x)"},
                              {R"(\)", R"(|\|x)", false, R"(|\|x)"},
                              {"", "||x", false, "||x"}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.folder);
        ZFileLocation location(wide(row.folder) + wide("x"), false);
        EXPECT_EQ(location.to_parent_folder(), row.has_parent);
        EXPECT_EQ(parts_of(location), row.parent);
        location = ZFileLocation(wide(row.folder) + wide("x"), false);
        location.folder_to_name();
        EXPECT_EQ(parts_of(location), row.as_name);
    }
}

TEST(locations, other_changes) {
    struct row_t {
        const char* what;
        void (*change)(ZFileLocation& location);
        const char* parts;
    };
    constexpr row_t rows[] = {
        {"clear", [](auto& l) { l.clear(); }, "||"},
        {"drive letter", [](auto& l) { l.set_drive_letter(u'z'); }, R"(z:|\a\|b.c)"},
        {"server", [](auto& l) { l.set_server(wide("host")); }, R"(\\host|\a\|b.c)"},
        {"empty server", [](auto& l) { l.set_server(wide("")); }, R"(|\a\|b.c)"},
        {"folder", [](auto& l) { l.set_folder(wide("p/q")); }, R"(C:|p\q\|b.c)"},
        {"folder with separator", [](auto& l) { l.set_folder(wide("p/")); }, R"(C:|p\|b.c)"},
        {"empty folder", [](auto& l) { l.set_folder(wide("")); }, R"(C:|\|b.c)"},
        {"its own folder", [](auto& l) { l.set_folder(l.inq_folder()); }, R"(C:|\a\|b.c)"},
        {"name", [](auto& l) { l.set_name(wide("x/y")); }, R"(C:|\a\|x/y)"},
        {"its own name", [](auto& l) { l.set_name(l.inq_name()); }, R"(C:|\a\|b.c)"},
        {"name to folder", [](auto& l) { l.name_to_folder(); }, R"(C:|\a\b.c\|)"},
        {"no name to folder", [](auto& l) { l.set_name(wide("")), l.name_to_folder(); }, R"(C:|\a\|)"},
        {"add folder", [](auto& l) { l.add_folder(wide("f")); }, R"(C:|\a\f\|b.c)"},
        {"add its own folder", [](auto& l) { l.add_folder(l.inq_folder()); }, R"(C:|\a\\a\\|b.c)"},
        {"tilde", [](auto& l) { l.add_tilde(); }, R"(C:|\a\|b.c~)"},
        {"plus", [](auto& l) { l.add_plus(); }, R"(C:|\a\|b.c+)"},
        {"itself",
         [](auto& l) {
             const ZFileLocation& same = l;
             l = same;
         },
         R"(C:|\a\|b.c)"},
    };
    for (const row_t& row : rows) {
        ZFileLocation location = at(R"(C:\a\b.c)");
        row.change(location);
        EXPECT_EQ(parts_of(location), row.parts) << row.what;
    }
}

TEST(locations, a_server_needs_a_separator_before_a_relative_folder) {
    ZFileLocation location = at(R"(\\server\x\a.crw)");
    location.set_folder(wide(R"(share\)"));
    EXPECT_EQ(plain(location.inq_path()), R"(\\server\share\a.crw)");
    EXPECT_EQ(plain(location.inq_folder_path()), R"(\\server\share)");
    EXPECT_EQ(plain(location.inq_description()), R"(a.crw - \\servershare\)");
    EXPECT_EQ(plain(at(R"(C:\photos\IMG_0001.CR2)").inq_description()), R"(IMG_0001.CR2 - C:\photos\)");
    EXPECT_EQ(plain(ZFileLocation().inq_description()), " - ");
}

TEST(locations, equality_ignores_case) {
    const ZFileLocation location = at(R"(C:\photos\a.crw)");
    EXPECT_TRUE(location == at(R"(c:/PHOTOS/A.CRW)"));
    for (const char* const other : {R"(D:\photos\a.crw)", R"(C:\photo\a.crw)", R"(C:\photos\b.crw)", ""})
        EXPECT_FALSE(location == at(other)) << other;
    ZFileLocation no_text_at_all;
    no_text_at_all.set_name(wide(""));
    EXPECT_TRUE(no_text_at_all == ZFileLocation());
    EXPECT_TRUE(no_text_at_all.inq_empty());
}

} // namespace
