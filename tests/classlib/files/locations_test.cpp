#include "classlib/files/ZFileLocation.h"
#include "tests/support/shown_text.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace {

std::string parts_of(const ZFileLocation& l) {
    return plain(l.inq_volume()) + '|' + plain(l.inq_folder()) + '|' + plain(l.inq_name());
}

TEST(locations, parsing_and_composing) {
    using row_t = std::tuple<ZUString, std::string, const char*, const char*>;
    const row_t rows[] = {
        {R"(C:/photos/a.cr2)", R"(C:|\photos\|a.cr2)", R"(C:\photos\a.cr2)", R"(C:\photos)"},
        {R"(C:\photos\)", R"(C:|\photos\|)", R"(C:\photos\)", R"(C:\photos)"},
        {R"(C:\photos)", R"(C:|\|photos)", R"(C:\photos)", R"(C:\)"},
        {"C:", "C:||", "C:", "C:"},
        {R"(C:photos\a.cr2)", R"(C:|photos\|a.cr2)", R"(C:photos\a.cr2)", "C:photos"},
        {R"(\\server\raw\a.crw)", R"(\\server|\raw\|a.crw)", R"(\\server\raw\a.crw)", R"(\\server\raw)"},
        {R"(//server/a.crw)", R"(\\server|\|a.crw)", R"(\\server\a.crw)", R"(\\server\)"},
        {R"(\\server)", R"(\\server||)", R"(\\server)", R"(\\server)"},
        {R"(\\)", "||", "", ""},
        {R"(a\b/c.d\e)", R"(|a\b\c.d\|e)", R"(a\b\c.d\e)", R"(a\b\c.d)"},
        {R"(\)", R"(|\|)", R"(\)", R"(\)"},
        {UTF16("\u00E9\\\U0001F4F7"), R"(|<E9>\|<D83D><DCF7>)", R"(<E9>\<D83D><DCF7>)", "<E9>"},
        {ZUString(), "||", "", ""},
    };
    for (const auto& [text, parts, path, folder_path] : rows) {
        SCOPED_TRACE(shown(text));
        const ZFileLocation location(text, false);
        EXPECT_EQ(parts_of(location), parts);
        EXPECT_EQ(plain(location.inq_path()), path);
        EXPECT_EQ(plain(location.inq_folder_path()), folder_path);
        EXPECT_EQ(location.inq_empty(), parts == "||");
    }
}

TEST(locations, the_extension_is_that_of_the_name) {
    using row_t = std::tuple<const char*, const char*, std::string>;
    for (const auto& [name, extension, base_name] : {row_t{"archive.tar.gz", ".gz", "archive.tar"},
                                                     {"README", "", "README"},
                                                     {".crw", ".crw", ""},
                                                     {"a.", ".", "a"},
                                                     {"", "", ""}}) {
        SCOPED_TRACE(name);
        ZFileLocation location(R"(C:\v1.2\)", true);
        location.set_name(name);
        EXPECT_EQ(plain(location.inq_extension()), extension);
        EXPECT_EQ(plain(location.inq_base_name()), base_name);
        for (const char* const given : {"tiff", ".tiff", ""}) {
            location.set_extension(given);
            EXPECT_EQ(parts_of(location), R"(C:|\v1.2\|)" + base_name + (*given != 0 ? ".tiff" : ""));
        }
    }
}

TEST(locations, changes) {
    using row_t = std::tuple<const char*, void (*)(ZFileLocation & l), const char*>;
    const row_t rows[] = {
        {R"(\photos\trip\x)", [](auto& l) { l.folder_to_name(); }, R"(|\photos\|trip)"},
        {R"(\p\x)", [](auto& l) { l.folder_to_name(); }, R"(|\|p)"},
        {R"(photos\x)", [](auto& l) { l.folder_to_name(); }, R"(|photos\|x)"},
        {R"(\x)", [](auto& l) { l.folder_to_name(); }, R"(|\|x)"},
        {R"(\photos\trip\x)", [](auto& l) { EXPECT_TRUE(l.to_parent_folder()); }, R"(|\photos\|x)"},
        {R"(\p\x)", [](auto& l) { EXPECT_TRUE(l.to_parent_folder()); }, R"(|\|x)"},
        {R"(photos\x)", [](auto& l) { EXPECT_TRUE(l.to_parent_folder()); }, R"(|\|x)"},
        {R"(a\x)", [](auto& l) { EXPECT_FALSE(l.to_parent_folder()); }, R"(|a\|x)"},
        {R"(\x)", [](auto& l) { EXPECT_FALSE(l.to_parent_folder()); }, R"(|\|x)"},
        {"x", [](auto& l) { EXPECT_FALSE(l.to_parent_folder()); }, "||x"},
        {R"(C:\a\b.c)", [](auto& l) { l.clear(); }, "||"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_drive_letter(u'z'); }, R"(z:|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_server("host"); }, R"(\\host|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_server(""); }, R"(|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_folder("p/q"); }, R"(C:|p\q\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_folder(""); }, R"(C:|\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_folder(l.inq_folder()); }, R"(C:|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_name("x/y"); }, R"(C:|\a\|x/y)"},
        {R"(C:\a\b.c)", [](auto& l) { l.name_to_folder(); }, R"(C:|\a\b.c\|)"},
        {R"(C:\a\b.c)", [](auto& l) { l.add_folder(l.inq_folder()); }, R"(C:|\a\\a\\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.add_tilde(), l.add_plus(); }, R"(C:|\a\|b.c~+)"},
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
    EXPECT_EQ(plain(location.inq_server()), "server");
    EXPECT_EQ(location.inq_drive_letter(), 0);
    const ZFileLocation on_drive(R"(C:\photos\a.crw)", false);
    EXPECT_EQ(plain(on_drive.inq_server()), "");
    EXPECT_EQ(on_drive.inq_drive_letter(), u'C');
    EXPECT_TRUE(on_drive == ZFileLocation(R"(c:/PHOTOS/A.CRW)", false));
    for (const char* const other : {R"(D:\photos\a.crw)", R"(C:\photo\a.crw)", R"(C:\photos\b.crw)", ""})
        EXPECT_FALSE(on_drive == ZFileLocation(other, false)) << other;
}

} // namespace
