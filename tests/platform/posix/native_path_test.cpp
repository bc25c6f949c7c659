#include "platform/files.h"
#include "tests/support/shown_text.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <climits>
#include <gtest/gtest.h>

namespace {

TEST(native_path, a_path_that_is_too_long_leads_nowhere) {
    // So many separators lead to the root folder, up to the longest path that the system takes.
    for (const std::size_t length : {PATH_MAX - 1UL, PATH_MAX + 0UL, 3UL * PATH_MAX}) {
        const std::basic_string<utf16_t> path(length, utf16_t(u'\\'));
        errno = 0;
        const bool is_folder = platform::inq_entry_kind(path.c_str()) == platform::entry_kind_t::folder;
        EXPECT_EQ(is_folder, length < PATH_MAX);
        EXPECT_EQ(errno, is_folder ? 0 : ENAMETOOLONG);
    }
}

TEST(temporary_folder, ends_with_a_separator_and_is_never_nameless) {
    const std::pair<const char*, const char*> rows[] = {
        {"/var/tmp", R"(\var\tmp\)"}, {"/\xC3\xA9/", R"(\<E9>\)"}, {"", R"(\tmp\)"}};
    for (const auto& [variable, want] : rows) {
        const temporary_folder_setting setting(variable);
        EXPECT_EQ(plain(platform::inq_temporary_folder().c_str()), want);
    }
}

} // namespace
