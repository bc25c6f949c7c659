#include "platform/files.h"
#include "tests/support/shown_text.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <climits>
#include <gtest/gtest.h>

namespace {

TEST(native_path, a_path_that_is_too_long_leads_nowhere) {
    // This many separators lead to the root folder, up to the longest path that the system takes.
    for (const auto& [length, want] : {std::pair(PATH_MAX - 1, 0), {PATH_MAX, ENAMETOOLONG}}) {
        const std::basic_string<utf16_t> path(static_cast<std::size_t>(length), utf16_t(u'\\'));
        errno = 0;
        EXPECT_EQ(platform::inq_entry_kind(path.c_str()) == platform::entry_kind_t::folder, want == 0);
        EXPECT_EQ(errno, want);
    }
}

TEST(temporary_folder, ends_with_a_separator_and_is_never_nameless) {
    for (const auto& [variable, want] :
         {std::pair("/var/tmp", R"(\var\tmp\)"), {"/\xC3\xA9/", R"(\<E9>\)"}, {"", R"(\tmp\)"}}) {
        const temporary_folder_setting setting(variable);
        EXPECT_EQ(plain(platform::inq_temporary_folder().c_str()), want);
    }
}

} // namespace
