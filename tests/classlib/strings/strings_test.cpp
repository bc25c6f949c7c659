#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace {

TEST(wide_strings, bytes_are_widened_not_decoded) {
    EXPECT_EQ(shown(ZUString("\xE9t\xE9")), "'<E9>t<E9>'");
    EXPECT_EQ(shown(ZUString("")), "''");
    EXPECT_EQ(shown(ZUString(static_cast<const char*>(nullptr))), "''");
    ZUString s;
    s << "\xFF" << wide("|") << UTF16("x") << 0 << -42 << INT_MIN;
    EXPECT_EQ(shown(s), "'<FF>|x0-42-2147483648'");
}

TEST(wide_strings, units_are_not_their_low_bytes_and_only_ascii_has_a_case) {
    EXPECT_EQ(ZUString(UTF16("\u0141")).find(utf16_t(u'A'), 0), -1);
    EXPECT_EQ(ZUString(UTF16("z")).compare(UTF16("\u8001")), -1);
    EXPECT_EQ(ZUString(UTF16("\u00C9")).compare_no_case(UTF16("\u00E9")), -1);
    int value = 0;
    EXPECT_FALSE(ZUString(UTF16("\u0131")).to_int(value, nullptr));
    ZUString s(UTF16("\u0120a\u00E9\u0131\u0120"));
    s.trim();
    s.to_upper();
    EXPECT_EQ(shown(s), "'<120>A<E9><131><120>'");
}

TEST(byte_strings, bytes_beyond_ascii_are_no_letters_and_no_blanks) {
    ZString s(" \xA0z\xE9\x85 ");
    s.trim();
    s.to_upper();
    EXPECT_EQ(shown(s), "'<A0>Z<E9><85>'");
    EXPECT_EQ(ZString("\xC9").compare_no_case("\xE9"), -1);
    EXPECT_EQ(ZString("z").compare("\xE9"), -1); // bytes are unsigned
}

TEST(byte_strings, bytes_are_stored_as_they_are) {
    ZString s("before");
    s.set_bytes("a\0b", 3);
    EXPECT_EQ(std::string(s, 4), std::string("a\0b\0", 4));
    EXPECT_EQ(s.inq_size(), 2);
    s.set_bytes(static_cast<const char*>(s) + 2, 1);
    EXPECT_EQ(shown(s), "'b'");
    s.set_bytes(nullptr, 0);
    EXPECT_EQ(shown(s), "''");
    EXPECT_EQ(ZString().inq_size(), 1);
    ZString narrowed;
    narrowed.init_narrow(UTF16("a\u00E9\u20ACz\u0100"));
    EXPECT_EQ(shown(narrowed), "'a<E9>?z?'");
}

TEST(byte_strings, writing_appends_behind_the_first_zero) {
    ZString s;
    EXPECT_TRUE(s.write_bytes("abc", 0));
    EXPECT_TRUE(s.write_bytes("abc", -1));
    EXPECT_EQ(shown(s), "null");
    EXPECT_TRUE(s.write_bytes("a\0b", 3));
    EXPECT_EQ(std::string(s, 4), std::string("a\0b\0", 4));
    EXPECT_TRUE(s.write_bytes("cd\xE9", 3));
    EXPECT_EQ(shown(s), "'acd<E9>'");
    EXPECT_TRUE(s.write_bytes(static_cast<const char*>(s) + 1, 2));
    EXPECT_EQ(shown(s), "'acd<E9>cd'");
    EXPECT_TRUE(runs_out_of_memory(1, [&] { s.write_bytes("?", 1); }));
    EXPECT_EQ(shown(s), "'acd<E9>cd'");
}

TEST(code_pages, texts_keep_their_form) {
    using row_t = std::tuple<ZUString, const char*>;
    const row_t rows[] = {
        {ZUString(), "null"}, {wide(""), "''"}, {UTF16("a\U0001F4F7"), "'a<F0><9F><93><B7>'"}};
    for (const auto& [text, utf8] : rows) {
        const ZMBString bytes(text);
        EXPECT_EQ(shown(bytes), utf8);
        EXPECT_EQ(shown(ZUString::from_utf8(bytes)), shown(text));
    }
    EXPECT_EQ(shown(ZMBString(units(u"a\xD83D").c_str())), "'a<EF><BF><BD>'");
    EXPECT_EQ(shown(ZUString::from_utf8("a\xC3")), "'a<FFFD>'");
    for (const int n : {1, 2}) {
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZMBString(UTF16("\u00E9"))); })) << n;
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZUString::from_utf8("abc")); })) << n;
    }
}

} // namespace
