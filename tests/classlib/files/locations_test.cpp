#include "classlib/files/ZFileLocation.h"
#include "tests/support/shown_text.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <utility>

namespace {

ZFileLocation at(const char* path) {
    return {wide(path), false};
}

std::string parts_of(const ZFileLocation& location) {
    return plain(location.inq_volume()) + '|' + plain(location.inq_folder()) + '|' +
           plain(location.inq_name());
}

TEST(locations, parsing_and_composing) {
    using row_t = std::tuple<const char*, std::string, const char*, const char*>;
    const row_t rows[] = {
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
    for (const auto& [text, parts, path, folder_path] : rows) {
        SCOPED_TRACE(shown(text));
        const ZFileLocation location = at(text);
        EXPECT_EQ(parts_of(location), parts);
        EXPECT_EQ(plain(location.inq_path()), path);
        EXPECT_EQ(plain(location.inq_folder_path()), folder_path);
        EXPECT_EQ(parts_of(ZFileLocation(location.inq_path(), false)), parts);
        EXPECT_EQ(location.inq_empty(), parts == "||");
    }
    EXPECT_EQ(parts_of(ZFileLocation(UTF16("\u00E9\\\U0001F4F7"), false)), R"(|<E9>\|<D83D><DCF7>)");
}

TEST(locations, a_text_may_stand_for_a_folder) {
    using row_t = std::pair<const char*, const char*>;
    for (const auto& [text, parts] :
         {row_t{R"(C:\photos)", R"(C:|\photos\|)"}, row_t{"C:photos", R"(C:|photos\|)"},
          row_t{R"(C:\photos\)", R"(C:|\photos\|)"}, row_t{"", "||"}})
        EXPECT_EQ(parts_of(ZFileLocation(wide(text), true)), parts) << text;
}

TEST(locations, volumes) {
    using row_t = std::tuple<const char*, char16_t, const char*>;
    const row_t rows[] = {{R"(C:\a)", u'C', ""},
                          {"::", u':', ""},
                          {R"(\\server\share\a)", 0, "server"},
                          {R"(\a)", 0, ""},
                          {"", 0, ""}};
    for (const auto& [text, letter, server] : rows) {
        EXPECT_EQ(at(text).inq_drive_letter(), letter) << text;
        EXPECT_EQ(plain(at(text).inq_server()), server) << text;
    }
}

TEST(locations, the_extension_is_that_of_the_name) {
    using extension_t = std::pair<const char*, const char*>;
    using row_t = std::tuple<const char*, const char*, const char*>;
    const row_t rows[] = {{"IMG_0001.CR2", ".CR2", "IMG_0001"},
                          {"archive.tar.gz", ".gz", "archive.tar"},
                          {"README", "", "README"},
                          {".crw", ".crw", ""},
                          {"a.", ".", "a"},
                          {"", "", ""}};
    for (const auto& [name, extension, base_name] : rows) {
        SCOPED_TRACE(name);
        const ZFileLocation location = at((R"(C:\v1.2\)" + std::string(name)).c_str());
        EXPECT_EQ(plain(location.inq_extension()), extension);
        EXPECT_EQ(plain(location.inq_base_name()), base_name);
        ZFileLocation changed = location;
        changed.remove_extension();
        EXPECT_EQ(parts_of(changed), std::string(R"(C:|\v1.2\|)") + base_name);
        for (const auto& [given, added] :
             {extension_t{"tiff", ".tiff"}, extension_t{".tiff", ".tiff"}, extension_t{"", ""}}) {
            changed = location;
            changed.set_extension(wide(given));
            EXPECT_EQ(parts_of(changed), std::string(R"(C:|\v1.2\|)") + base_name + added) << given;
        }
    }
}

TEST(locations, the_innermost_folder) {
    using row_t = std::tuple<const char*, const char*, bool, const char*>;
    const row_t rows[] = {{R"(\photos\trip\x)", R"(|\photos\|trip)", true, R"(|\photos\|x)"},
                          {R"(\photos\x)", R"(|\|photos)", true, R"(|\|x)"},
                          {R"(\p\x)", R"(|\|p)", true, R"(|\|x)"},
                          {R"(a\b\x)", R"(|a\|b)", true, R"(|a\|x)"},
                          {R"(photos\x)", R"(|photos\|x)", true, R"(|\|x)"},
                          {R"(a\x)", R"(|a\|x)", false, R"(|a\|x)"},
                          {R"(\x)", R"(|\|x)", false, R"(|\|x)"},
                          {"x", "||x", false, "||x"}};
    for (const auto& [text, as_name, has_parent, parent] : rows) {
        ZFileLocation location = at(text);
        EXPECT_EQ(location.to_parent_folder(), has_parent) << text;
        EXPECT_EQ(parts_of(location), parent) << text;
        location = at(text);
        location.folder_to_name();
        EXPECT_EQ(parts_of(location), as_name) << text;
    }
}

TEST(locations, other_changes) {
    using change_t = void (*)(ZFileLocation&);
    using row_t = std::pair<change_t, const char*>;
    const row_t rows[] = {
        {[](ZFileLocation& l) { l.clear(); }, "||"},
        {[](ZFileLocation& l) { l.set_drive_letter(u'z'); }, R"(z:|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_server(wide("host")); }, R"(\\host|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_server(wide("")); }, R"(|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_folder(wide("p/q")); }, R"(C:|p\q\|b.c)"},
        {[](ZFileLocation& l) { l.set_folder(wide("p/")); }, R"(C:|p\|b.c)"},
        {[](ZFileLocation& l) { l.set_folder(wide("")); }, R"(C:|\|b.c)"},
        {[](ZFileLocation& l) { l.set_folder(l.inq_folder()); }, R"(C:|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_name(wide("x/y")); }, R"(C:|\a\|x/y)"},
        {[](ZFileLocation& l) { l.set_name(l.inq_name()); }, R"(C:|\a\|b.c)"},
        {[](ZFileLocation& l) { l.name_to_folder(); }, R"(C:|\a\b.c\|)"},
        {[](ZFileLocation& l) { l.set_name(wide("")), l.name_to_folder(); }, R"(C:|\a\|)"},
        {[](ZFileLocation& l) { l.add_folder(wide("f")); }, R"(C:|\a\f\|b.c)"},
        {[](ZFileLocation& l) { l.add_folder(l.inq_folder()); }, R"(C:|\a\\a\\|b.c)"},
        {[](ZFileLocation& l) { l.add_tilde(); }, R"(C:|\a\|b.c~)"},
        {[](ZFileLocation& l) { l.add_plus(); }, R"(C:|\a\|b.c+)"},
    };
    for (const auto& [change, parts] : rows) {
        ZFileLocation location = at(R"(C:\a\b.c)");
        change(location);
        EXPECT_EQ(parts_of(location), parts);
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
