#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace {

TEST(wide_strings, bytes_are_widened_and_units_are_not_their_low_bytes) {
    EXPECT_EQ(shown(ZUString(static_cast<const char*>(nullptr))), "''");
    ZUString s("\xE9");
    s << "\xFF" << ZUString("|") << UTF16("x") << 0 << -42 << INT_MIN;
    EXPECT_EQ(shown(s), "'<E9><FF>|x0-42-2147483648'");
    EXPECT_EQ(ZUString(UTF16("\u0141")).find(utf16_t(u'A'), 0), -1);
    EXPECT_EQ(ZUString(UTF16("z")).compare(UTF16("\u8001")), -1);
    EXPECT_EQ(ZUString(UTF16("\u00C9")).compare_no_case(UTF16("\u00E9")), -1); // only ASCII has a case
    int value = 0;
    EXPECT_FALSE(ZUString(UTF16("\u0131")).to_int(value, nullptr));
    ZUString changed(UTF16("\u0120a\u00E9\u0131\u0120"));
    changed.trim();
    changed.to_upper();
    EXPECT_EQ(shown(changed), "'<120>A<E9><131><120>'");
}

TEST(byte_strings, bytes_are_stored_as_they_are) {
    ZString s(" \xA0z\xE9\x85 ");
    s.trim();
    s.to_upper();
    EXPECT_EQ(shown(s), "'<A0>Z<E9><85>'");
    EXPECT_EQ(ZString("z").compare("\xE9"), -1); // bytes are unsigned
    s.set_bytes("a\0b", 3);
    EXPECT_EQ(std::string(s, 4), std::string("a\0b\0", 4));
    EXPECT_EQ(s.inq_size(), 2);
    s.set_bytes(static_cast<const char*>(s) + 2, 1);
    EXPECT_EQ(shown(s), "'b'");
    ZString narrowed;
    narrowed.init_narrow(UTF16("a\u00E9\u20ACz\u0100"));
    EXPECT_EQ(shown(narrowed), "'a<E9>?z?'");
}

TEST(byte_strings, writing_appends_behind_the_first_zero) {
    ZString s;
    EXPECT_TRUE(s.write_bytes("abc", 0) && s.write_bytes("abc", -1));
    EXPECT_EQ(shown(s), "null");
    EXPECT_TRUE(s.write_bytes("a\0b", 3) && s.write_bytes("cd\xE9", 3) &&
                s.write_bytes(static_cast<const char*>(s) + 1, 2));
    EXPECT_EQ(shown(s), "'acd<E9>cd'");
    EXPECT_TRUE(runs_out_of_memory(1, [&] { s.write_bytes("?", 1); }));
    EXPECT_EQ(shown(s), "'acd<E9>cd'");
}

TEST(code_pages, texts_keep_their_form) {
    using row_t = std::tuple<ZUString, const char*>;
    const row_t rows[] = {{ZUString(), "null"}, {"", "''"}, {UTF16("a\U0001F4F7"), "'a<F0><9F><93><B7>'"}};
    for (const auto& [text, utf8] : rows) {
        EXPECT_EQ(shown(ZMBString(text)), utf8);
        EXPECT_EQ(shown(ZUString::from_utf8(ZMBString(text))), shown(text));
    }
    EXPECT_EQ(shown(ZUString::from_utf8("a\xC3")), "'a<FFFD>'");
    for (const int n : {1, 2}) {
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZMBString(UTF16("\u00E9"))); })) << n;
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZUString::from_utf8("abc")); })) << n;
    }
}

} // namespace
