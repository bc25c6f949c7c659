#include "platform/files.h"
#include "platform/posix/native_path.h"
#include "tests/support/shown_text.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <climits>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>

namespace {

TEST(native_path, backslashes_become_slashes_and_text_utf8) {
    struct row_t {
        const utf16_t* path;
        const char* want;
    };
    const row_t rows[] = {{UTF16("\\tmp\\a.cr2"), "/tmp/a.cr2"},
                          {UTF16("a/b\\"), "a/b/"},
                          {UTF16("\\\u00E9 \U0001F4F7"), "/\xC3\xA9 \xF0\x9F\x93\xB7"}};
    for (const row_t& row : rows)
        EXPECT_STREQ(platform::native_path(row.path).c_str(), row.want);
    EXPECT_EQ(plain(platform::library_path("/tmp/\xC3\xA9").c_str()), "\\tmp\\<E9>");
}

TEST(native_path, a_path_that_is_too_long_leads_nowhere) {
    // Up to the system's limit such a path leads to the root folder, beyond it to nothing.
    for (const std::size_t length :
         {std::size_t{PATH_MAX - 1}, std::size_t{PATH_MAX}, std::size_t{3 * PATH_MAX}}) {
        const std::basic_string<utf16_t> path(length, utf16_t(u'\\'));
        errno = 0;
        const bool is_folder = platform::inq_entry_kind(path.c_str()) == platform::entry_kind_t::folder;
        EXPECT_EQ(is_folder, length < PATH_MAX) << length;
        EXPECT_EQ(errno, length < PATH_MAX ? 0 : ENAMETOOLONG) << length;
    }
}

TEST(temporary_folder, ends_with_a_separator_and_is_never_nameless) {
    struct row_t {
        const char* variable;
        const char* want;
    };
    constexpr row_t rows[] = {{"/var/tmp", "\\var\\tmp\\"},
                              {"/var/tmp/", "\\var\\tmp\\"},
                              {"/\xC3\xA9", "\\<E9>\\"},
                              {"", "\\tmp\\"}};
    for (const row_t& row : rows) {
        const temporary_folder_setting setting(row.variable);
        EXPECT_EQ(plain(platform::inq_temporary_folder().c_str()), row.want);
    }
}

} // namespace
