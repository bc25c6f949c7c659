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
        {R"(C:photos\a.cr2)", R"(C:|photos\|a.cr2)", R"(C:photos\a.cr2)", "C:photos"},
        {R"(\\server\raw\a.crw)", R"(\\server|\raw\|a.crw)", R"(\\server\raw\a.crw)", R"(\\server\raw)"},
        {R"(//server/a.crw)", R"(\\server|\|a.crw)", R"(\\server\a.crw)", R"(\\server\)"},
        {R"(\\server)", R"(\\server||)", R"(\\server)", R"(\\server)"},
        {R"(\\)", "||", "", ""},
        {R"(a\b/c.d\e)", R"(|a\b\c.d\|e)", R"(a\b\c.d\e)", R"(a\b\c.d)"},
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

TEST(locations, changes) {
    using row_t = std::tuple<const char*, void (*)(ZFileLocation & l), const char*>;
    const row_t rows[] = {
        {R"(\photos\trip\x)", [](auto& l) { l.folder_to_name(); }, R"(|\photos\|trip)"},
        {R"(photos\x)", [](auto& l) { l.folder_to_name(); }, R"(|photos\|x)"},
        {R"(\photos\trip\x)", [](auto& l) { EXPECT_TRUE(l.to_parent_folder()); }, R"(|\photos\|x)"},
        {R"(photos\x)", [](auto& l) { EXPECT_TRUE(l.to_parent_folder()); }, R"(|\|x)"},
        {R"(a\x)", [](auto& l) { EXPECT_FALSE(l.to_parent_folder()); }, R"(|a\|x)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_drive_letter(u'z'); }, R"(z:|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_server("host"); }, R"(\\host|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_server(""); }, R"(|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_folder(""); }, R"(C:|\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.set_folder(l.inq_folder()); }, R"(C:|\a\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.name_to_folder(); }, R"(C:|\a\b.c\|)"},
        {R"(C:\a\b.c)", [](auto& l) { l.add_folder(l.inq_folder()); }, R"(C:|\a\\a\\|b.c)"},
        {R"(C:\a\b.c)", [](auto& l) { l.add_tilde(), l.add_plus(); }, R"(C:|\a\|b.c~+)"},
        {R"(\v1.2\a.tar.gz)", [](auto& l) { l.set_extension("tiff"); }, R"(|\v1.2\|a.tar.tiff)"},
        {R"(\v1.2\a)", [](auto& l) { l.set_extension(".tiff"); }, R"(|\v1.2\|a.tiff)"},
        {R"(\v1.2\.crw)", [](auto& l) { l.set_extension(""); }, R"(|\v1.2\|)"},
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
    EXPECT_EQ(plain(location.inq_extension()) + plain(location.inq_base_name()), ".crwa");
    location.set_name("a");
    EXPECT_EQ(plain(location.inq_extension()) + plain(location.inq_base_name()), "a");
    const ZFileLocation on_drive(R"(C:\photos\a.crw)", false);
    EXPECT_EQ(plain(on_drive.inq_server()), "");
    EXPECT_EQ(on_drive.inq_drive_letter(), u'C');
    EXPECT_TRUE(on_drive == ZFileLocation(R"(c:/PHOTOS/A.CRW)", false));
    for (const char* const other : {R"(D:\photos\a.crw)", R"(C:\photo\a.crw)", R"(C:\photos\b.crw)", ""})
        EXPECT_FALSE(on_drive == ZFileLocation(other, false)) << other;
}

} // namespace
