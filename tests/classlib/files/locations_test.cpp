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

std::string parts_of(const ZFileLocation& l) {
    return plain(l.inq_volume()) + '|' + plain(l.inq_folder()) + '|' + plain(l.inq_name());
}

TEST(locations, parsing_and_composing) {
    using row_t = std::tuple<const char*, std::string, const char*, const char*>;
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
        {"a.cr2", "||a.cr2", "a.cr2", ""},
        {nullptr, "||", "", ""},
    };
    for (const auto& [text, parts, path, folder_path] : rows) {
        SCOPED_TRACE(shown(text));
        const ZFileLocation location = at(text);
        EXPECT_EQ(parts_of(location), parts);
        EXPECT_EQ(plain(location.inq_path()), path);
        EXPECT_EQ(plain(location.inq_folder_path()), folder_path);
        EXPECT_EQ(location.inq_empty(), parts == "||");
    }
    EXPECT_EQ(parts_of({wide(R"(C:\photos)"), true}), R"(C:|\photos\|)");
    EXPECT_EQ(parts_of({UTF16("\u00E9\\\U0001F4F7"), false}), R"(|<E9>\|<D83D><DCF7>)");
}

TEST(locations, the_extension_is_that_of_the_name) {
    using row_t = std::tuple<const char*, const char*, const char*>;
    const row_t rows[] = {{"archive.tar.gz", ".gz", "archive.tar"},
                          {"README", "", "README"},
                          {".crw", ".crw", ""},
                          {"a.", ".", "a"},
                          {"", "", ""}};
    for (const auto& [name, extension, base_name] : rows) {
        SCOPED_TRACE(name);
        ZFileLocation location = at((R"(C:\v1.2\)" + std::string(name)).c_str());
        EXPECT_EQ(plain(location.inq_extension()), extension);
        EXPECT_EQ(plain(location.inq_base_name()), base_name);
        for (const char* const given : {"tiff", ".tiff"}) {
            location.set_extension(wide(given));
            EXPECT_EQ(parts_of(location), std::string(R"(C:|\v1.2\|)") + base_name + ".tiff");
        }
        location.set_extension(wide(""));
        EXPECT_EQ(plain(location.inq_name()), base_name);
    }
}

TEST(locations, the_innermost_folder) {
    using row_t = std::tuple<const char*, const char*, bool, const char*>;
    const row_t rows[] = {{R"(\photos\trip\x)", R"(|\photos\|trip)", true, R"(|\photos\|x)"},
                          {R"(\p\x)", R"(|\|p)", true, R"(|\|x)"},
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
    using row_t = std::pair<void (*)(ZFileLocation&), const char*>;
    const row_t rows[] = {
        {[](ZFileLocation& l) { l.clear(); }, "||"},
        {[](ZFileLocation& l) { l.set_drive_letter(u'z'); }, R"(z:|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_server(wide("host")); }, R"(\\host|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_server(wide("")); }, R"(|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_folder(wide("p/q")); }, R"(C:|p\q\|b.c)"},
        {[](ZFileLocation& l) { l.set_folder(wide("")); }, R"(C:|\|b.c)"},
        {[](ZFileLocation& l) { l.set_folder(l.inq_folder()); }, R"(C:|\a\|b.c)"},
        {[](ZFileLocation& l) { l.set_name(wide("x/y")); }, R"(C:|\a\|x/y)"},
        {[](ZFileLocation& l) { l.name_to_folder(); }, R"(C:|\a\b.c\|)"},
        {[](ZFileLocation& l) { l.add_folder(l.inq_folder()); }, R"(C:|\a\\a\\|b.c)"},
        {[](ZFileLocation& l) { l.add_tilde(), l.add_plus(); }, R"(C:|\a\|b.c~+)"},
    };
    for (const auto& [change, parts] : rows) {
        ZFileLocation location = at(R"(C:\a\b.c)");
        change(location);
        EXPECT_EQ(parts_of(location), parts);
    }
}

TEST(locations, volumes_and_descriptions) {
    ZFileLocation location = at(R"(\\server\x\a.crw)");
    location.set_folder(wide(R"(share\)")); // which needs a separator between the two
    EXPECT_EQ(plain(location.inq_path()), R"(\\server\share\a.crw)");
    EXPECT_EQ(plain(location.inq_folder_path()), R"(\\server\share)");
    EXPECT_EQ(plain(location.inq_description()), R"(a.crw - \\servershare\)");
    EXPECT_EQ(plain(location.inq_server()), "server");
    EXPECT_EQ(location.inq_drive_letter(), 0);
    EXPECT_EQ(plain(at(R"(C:\a)").inq_server()), "");
    EXPECT_EQ(at(R"(C:\a)").inq_drive_letter(), u'C');
    EXPECT_EQ(ZFileLocation().inq_drive_letter(), 0);
}

TEST(locations, equality_ignores_case) {
    const ZFileLocation location = at(R"(C:\photos\a.crw)");
    EXPECT_TRUE(location == at(R"(c:/PHOTOS/A.CRW)"));
    for (const char* const other : {R"(D:\photos\a.crw)", R"(C:\photo\a.crw)", R"(C:\photos\b.crw)", ""})
        EXPECT_FALSE(location == at(other)) << other;
}

} // namespace
