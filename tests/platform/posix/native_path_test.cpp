#include "platform/files.h"
#include "tests/support/shown_text.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <climits>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace {

TEST(native_path, a_path_that_is_too_long_leads_nowhere) {
    // So many separators lead to the root folder, up to the longest path that the system takes.
    for (const std::size_t length :
         {std::size_t{PATH_MAX - 1}, std::size_t{PATH_MAX}, 3 * std::size_t{PATH_MAX}}) {
        const std::basic_string<utf16_t> path(length, utf16_t(u'\\'));
        const bool is_short_enough = length < PATH_MAX;
        errno = 0;
        EXPECT_EQ(platform::inq_entry_kind(path.c_str()) == platform::entry_kind_t::folder, is_short_enough);
        EXPECT_EQ(errno, is_short_enough ? 0 : ENAMETOOLONG);
    }
}

TEST(temporary_folder, ends_with_a_separator_and_is_never_nameless) {
    using row_t = std::tuple<const char*, const char*>;
    const row_t rows[] = {{"/var/tmp", R"(\var\tmp\)"},
                          {"/var/tmp/", R"(\var\tmp\)"},
                          {"/\xC3\xA9", R"(\<E9>\)"},
                          {"", R"(\tmp\)"}};
    for (const auto& [variable, want] : rows) {
        const temporary_folder_setting setting(variable);
        EXPECT_EQ(plain(platform::inq_temporary_folder().c_str()), want);
    }
}

} // namespace
