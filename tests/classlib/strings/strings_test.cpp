#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <utility>

namespace {

constexpr const utf16_t* no_text = nullptr;

constexpr utf16_t unit(char16_t c) {
    return c;
}

TEST(wide_strings, bytes_are_widened_not_decoded) {
    EXPECT_EQ(shown(ZUString("\xE9t\xE9")), "'<E9>t<E9>'");
    EXPECT_EQ(shown(ZUString("")), "''");
    EXPECT_EQ(shown(ZUString(static_cast<const char*>(nullptr))), "''");
    ZUString s;
    s << "\xFF" << wide("|") << UTF16("x") << 0 << -42 << INT_MIN;
    EXPECT_EQ(shown(s), "'<FF>|x0-42-2147483648'");
}

TEST(wide_strings, comparison) {
    using row_t = std::tuple<ZUString, ZUString, int, int>;
    const row_t rows[] = {{wide(nullptr), wide(nullptr), 0, 0},
                          {wide(nullptr), wide(""), 0, 0},
                          {wide(nullptr), wide("abc"), -1, -1},
                          {wide(""), wide("abc"), -1, -1},
                          {wide("abc"), wide("abc"), 0, 0},
                          {wide("a"), wide("abc"), -1, -1},
                          {wide("ABC"), wide("abc"), -1, 0},
                          {wide("B"), wide("a"), -1, 1},
                          {wide("_"), wide("A"), 1, -1},
                          {wide("z"), UTF16("\u8001"), -1, -1},
                          {UTF16("\u00C9"), UTF16("\u00E9"), -1, -1}};
    for (const auto& [a, b, order, order_without_case] : rows) {
        SCOPED_TRACE(shown(a) + " and " + shown(b));
        EXPECT_EQ(a.compare(b), order);
        EXPECT_EQ(b.compare(a), -order);
        EXPECT_EQ(a.compare_no_case(b), order_without_case);
        EXPECT_EQ(b.compare_no_case(a), -order_without_case);
        EXPECT_EQ(a == b, order == 0);
        EXPECT_EQ(a == static_cast<const utf16_t*>(b), order == 0);
        EXPECT_EQ(a.is_equal(b), order == 0);
        EXPECT_EQ(a.is_equal_no_case(b), order_without_case == 0);
        EXPECT_EQ(a < b, order < 0);
        EXPECT_EQ(a > b, order > 0);
    }
}

TEST(wide_strings, search) {
    using row_t = std::tuple<const char*, const char*, int, int>;
    const row_t rows[] = {{"a.b.c", ".", 0, 1},     {"a.b.c", ".", 2, 3},    {"a.b.c", ".", 4, -1},
                          {"a.b.c", ".", 9, -1},    {"abcbc", "bc", 0, 1},   {"abcbc", "bc", 2, 3},
                          {"abcbc", "bc", 4, -1},   {"abcbc", "bcd", 3, -1}, {"abcbc", "", 2, 2},
                          {"abcbc", nullptr, 4, 4}, {"abcbc", "", 5, -1},    {"", "", 0, -1},
                          {"", ".", 0, -1},         {nullptr, ".", 0, -1},   {nullptr, nullptr, 0, -1}};
    for (const auto& [text, search, start, want] : rows) {
        SCOPED_TRACE(testing::Message() << shown(text) << ", " << shown(search) << ", " << start);
        const ZUString s = wide(search);
        EXPECT_EQ(wide(text).find(static_cast<const utf16_t*>(s), start), want);
        if (s.length() == 1) {
            EXPECT_EQ(wide(text).find(s.inq_char(0), start), want);
        }
    }
    EXPECT_EQ(wide("a.b.c").find_last(unit(u'.')), 3);
    EXPECT_EQ(wide("").find_last(unit(u'.')), -1);
    EXPECT_EQ(ZUString().find_last(unit(u'.')), -1);
    EXPECT_EQ(ZUString(UTF16("\u0141")).find(unit(u'A'), 0), -1); // the low byte is not the unit
}

TEST(wide_strings, single_units) {
    const ZUString s(UTF16("a\u20AC"));
    EXPECT_EQ(s.inq_char(1), unit(u'\u20AC'));
    for (const int outside : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(s.inq_char(outside), 0) << outside;
        EXPECT_EQ(ZUString().inq_char(outside), 0) << outside;
    }
    EXPECT_EQ(s.inq_length(), 2);
    EXPECT_EQ(ZUString().inq_length(), 0);
}

TEST(wide_strings, concatenation) {
    using row_t = std::tuple<const char*, const char*, const char*>;
    const row_t rows[] = {
        {nullptr, nullptr, "null"}, {nullptr, "", "''"}, {"", nullptr, "''"},   {"", "", "''"},
        {nullptr, "b", "'b'"},      {"", "bc", "'bc'"},  {"a", nullptr, "'a'"}, {"a", "", "'a'"},
        {"ab", "cde", "'abcde'"}};
    for (const auto& [first, second, want] : rows) {
        SCOPED_TRACE(shown(first) + " + " + shown(second));
        const ZUString a = wide(first);
        const ZUString b = wide(second);
        const utf16_t* const text = b;
        EXPECT_EQ(shown(a + b), want);
        EXPECT_EQ(shown(a + text), want);
        EXPECT_EQ(shown(static_cast<const utf16_t*>(a) + b), want);
        ZUString by_string = a;
        ZUString by_text = a;
        EXPECT_EQ(shown((by_string += b) << no_text), want);
        EXPECT_EQ(shown((by_text << text) += no_text), want);
    }
    ZUString s = wide("a") + unit(u'b') + unit(0);
    s += unit(u'c');
    s += unit(0);
    EXPECT_EQ(shown(s), "'abc'");
    EXPECT_EQ(shown(ZUString() += unit(0)), "null");
}

TEST(wide_strings, counted_appending_never_leaves_null) {
    using row_t = std::tuple<const char*, const char*, int, const char*>;
    const row_t rows[] = {{"a", "xyz", 2, "'axy'"},    {"a", "xyz", 5, "'axyz'"}, {"a", "xyz", -1, "'axyz'"},
                          {"a", "xyz", 0, "'a'"},      {"a", nullptr, 2, "'a'"},  {nullptr, "xyz", 0, "''"},
                          {nullptr, nullptr, 0, "''"}, {nullptr, "xyz", 1, "'x'"}};
    for (const auto& [old, text, count, want] : rows) {
        ZUString s = wide(old);
        s.append(wide(text), count);
        EXPECT_EQ(shown(s), want) << shown(text) << ", " << count;
    }
}

TEST(wide_strings, replacement) {
    using row_t = std::tuple<const char*, const char*, const char*, const char*>;
    const row_t rows[] = {{"C:/a/b", "/", "\\", "'C:\\a\\b'"}, {"aaaa", "aa", "b", "'bb'"},
                          {"aaa", "aa", "b", "'ba'"},          {"\r\r", "\r", "", "null"},
                          {"\r\r", "\r", nullptr, "null"},     {"ab", "b", "bb", "'abb'"},
                          {"abcabc", "bc", "", "'aa'"},        {"abc", "x", "yy", "'abc'"},
                          {"abc", "abcd", "y", "'abc'"},       {"", "x", "yy", "null"},
                          {nullptr, "x", "yy", "null"},        {"xax", "x", "123", "'123a123'"}};
    for (const auto& [text, search, replacement, want] : rows) {
        ZUString s = wide(text);
        s.replace(wide(search), wide(replacement));
        EXPECT_EQ(shown(s), want) << shown(text) << ", " << search;
    }
}

TEST(wide_strings, an_empty_search_is_reported_and_changes_nothing) {
    for (const char* const text : {"abc", "", static_cast<const char*>(nullptr)}) {
        const recording_reporter reporter;
        ZUString s = wide(text);
        s.replace(ZUString(), UTF16("x"));
        EXPECT_EQ(shown(s), shown(text));
        ASSERT_EQ(reporter.inq_reports().size(), 1U);
        const std::string& report = reporter.inq_reports().front();
        EXPECT_TRUE(report.starts_with("assertion ") && report.ends_with(" ZUString: search_len > 0"))
            << report;
    }
}

TEST(wide_strings, changes_allocate_the_exact_size_once_or_change_nothing) {
    // Each changes 'abc' by 'b' or by a piece of itself.
    using row_t = std::pair<void (*)(ZUString & s, const utf16_t* own, const ZUString& b), std::string>;
    const row_t rows[] = {
        {[](ZUString& s, const utf16_t*, const ZUString& b) { s += b; }, "'abcb'"},
        {[](ZUString& s, const utf16_t*, const ZUString&) { s += s; }, "'abcabc'"},
        {[](ZUString& s, const utf16_t* own, const ZUString&) { s += own + 1; }, "'abcbc'"},
        {[](ZUString& s, const utf16_t* own, const ZUString&) { s << own + 3; }, "'abc'"},
        {[](ZUString& s, const utf16_t*, const ZUString&) { s += unit(u'!'); }, "'abc!'"},
        {[](ZUString& s, const utf16_t* own, const ZUString&) { s.append(own + 1, 1); }, "'abcb'"},
        {[](ZUString& s, const utf16_t*, const ZUString&) { s.append(no_text, 1); }, "'abc'"},
        {[](ZUString& s, const utf16_t*, const ZUString& b) { s.replace(s, b); }, "'b'"},
        {[](ZUString& s, const utf16_t*, const ZUString& b) { s.replace(b, s); }, "'aabcc'"},
        {[](ZUString& s, const utf16_t*, const ZUString&) { s.replace(s, s); }, "'abc'"},
    };
    const ZUString b = wide("b");
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.second);
        ZUString s = wide("abc");
        {
            const allocation_meter::section section(0);
            row.first(s, s, b);
            EXPECT_EQ(section.inq_asked(), 1);
            EXPECT_EQ(section.inq_bytes(), (row.second.size() - 1) * sizeof(utf16_t)); // quotes off, 0 on
        }
        EXPECT_EQ(shown(s), row.second);
        s = wide("abc");
        EXPECT_TRUE(runs_out_of_memory(1, [&] { row.first(s, s, b); }));
        EXPECT_EQ(shown(s), "'abc'");
    }
}

TEST(wide_strings, changes_of_the_whole_text) {
    using row_t = std::tuple<const char*, void (ZUString::*)(), const char*>;
    constexpr auto trim = static_cast<void (ZUString::*)()>(&ZUString::trim);
    const row_t rows[] = {{"  a b  ", trim, "'a b'"},
                          {" \t\n\v\f\r ", trim, "null"},
                          {"ab", trim, "'ab'"},
                          {"a ", trim, "'a'"},
                          {" a", trim, "'a'"},
                          {"", trim, "null"},
                          {nullptr, trim, "null"},
                          {"aZ{1", &ZUString::to_upper, "'AZ{1'"},
                          {"aZ[1", &ZUString::to_lower, "'az[1'"},
                          {nullptr, &ZUString::to_upper, "null"},
                          {"", &ZUString::to_lower, "''"},
                          {"a\r\nb\r", &ZUString::strip_cr, "'a<0A>b'"},
                          {"\r", &ZUString::strip_cr, "null"},
                          {"a\nb", &ZUString::lf_to_crlf, "'a<0D><0A>b'"},
                          {"a\r\nb", &ZUString::lf_to_crlf, "'a<0D><0D><0A>b'"},
                          {nullptr, &ZUString::lf_to_crlf, "null"}};
    for (const auto& [text, change, want] : rows) {
        ZUString s = wide(text);
        (s.*change)();
        EXPECT_EQ(shown(s), want) << shown(text);
    }
    ZUString beyond_ascii(UTF16("\u00E9\u0131\u00FF"));
    beyond_ascii.to_upper();
    EXPECT_EQ(shown(beyond_ascii), "'<E9><131><FF>'");
}

TEST(wide_strings, parts_of_a_text) {
    using row_t = std::tuple<ZUString, const char*>;
    const ZUString abc = wide("abc");
    const ZUString null;
    const row_t rows[] = {{abc.left(2), "'ab'"},    {abc.left(0), "''"},
                          {abc.left(9), "'abc'"},   {null.left(2), "''"},
                          {abc.right(2), "'bc'"},   {abc.right(0), "''"},
                          {abc.right(3), "'abc'"},  {abc.right(9), "'abc'"},
                          {null.right(2), "null"},  {abc.mid(1, 1), "'b'"},
                          {abc.mid(1, 2), "'bc'"},  {abc.mid(2, 5), "'abc'"},
                          {abc.mid(3, 0), "''"},    {abc.mid(INT_MAX, INT_MAX), "'abc'"},
                          {null.mid(0, 1), "null"}, {abc.sub_string(-2, -1), "'bc'"}};
    for (std::size_t i = 0; i < std::size(rows); ++i)
        EXPECT_EQ(shown(std::get<0>(rows[i])), std::get<1>(rows[i])) << "row " << i;
}

TEST(wide_strings, numbers) {
    std::int64_t wide_value = 0;
    int value = 0;
    unsigned int unsigned_value = 0;
    int base = 0;
    EXPECT_TRUE(wide(" -0x1F").to_int64(wide_value, &base) && wide_value == -31 && base == 16);
    EXPECT_TRUE(wide("0b11").to_int(value, nullptr) && value == 3);
    EXPECT_TRUE(wide("4294967295").to_uint(unsigned_value, nullptr) && unsigned_value == 4294967295U);
    EXPECT_FALSE(ZUString(UTF16("\u0131")).to_int(value, nullptr)); // its low byte is that of a digit

    using row_t = std::tuple<const char*, bool, double>;
    const row_t rows[] = {{" 3.5e2xyz", true, 350}, {"-.25", true, -0.25}, {"1.5.5", true, 1.5},
                          {"abc", false, 4711},     {"", false, 4711},     {" ", false, 4711},
                          {nullptr, false, 4711}};
    for (const auto& [text, is_number, want] : rows) {
        double number = 4711;
        EXPECT_EQ(wide(text).to_double(number), is_number) << shown(text);
        EXPECT_EQ(number, want) << shown(text);
    }
}

std::string bytes_of(const ZString& s, std::size_t n) {
    return {static_cast<const char*>(s), n};
}

TEST(byte_strings, bytes_are_stored_as_they_are) {
    ZString s("before");
    s.set_bytes("a\0b", 3);
    EXPECT_EQ(bytes_of(s, 4), std::string("a\0b\0", 4));
    EXPECT_EQ(s.inq_size(), 2);
    s.set_bytes(static_cast<const char*>(s) + 2, 1);
    EXPECT_EQ(shown(s), "'b'");
    s.set_bytes(nullptr, 0);
    EXPECT_EQ(shown(s), "''");
    EXPECT_EQ(s.inq_size(), 1);
    EXPECT_EQ(ZString().inq_size(), 1);
}

TEST(byte_strings, writing_appends_behind_the_first_zero) {
    ZString s;
    EXPECT_TRUE(s.write_bytes("abc", 0));
    EXPECT_TRUE(s.write_bytes("abc", -1));
    EXPECT_EQ(shown(s), "null");
    EXPECT_TRUE(s.write_bytes("a\0b", 3));
    EXPECT_EQ(bytes_of(s, 4), std::string("a\0b\0", 4));
    EXPECT_TRUE(s.write_bytes("cd\xE9", 3));
    EXPECT_EQ(shown(s), "'acd<E9>'");
    EXPECT_TRUE(s.write_bytes(static_cast<const char*>(s) + 1, 2));
    EXPECT_EQ(shown(s), "'acd<E9>cd'");
    EXPECT_TRUE(runs_out_of_memory(1, [&] { s.write_bytes("?", 1); }));
    EXPECT_EQ(shown(s), "'acd<E9>cd'");
}

TEST(code_pages, texts_keep_their_form) {
    using row_t = std::tuple<ZUString, const char*>;
    const row_t rows[] = {{ZUString(), "null"},
                          {wide(""), "''"},
                          {UTF16("a\u00E9"), "'a<C3><A9>'"},
                          {UTF16("\U0001F4F7"), "'<F0><9F><93><B7>'"}};
    for (const auto& [text, utf8] : rows) {
        const ZMBString bytes(text);
        EXPECT_EQ(shown(bytes), utf8);
        EXPECT_EQ(shown(ZUString::from_utf8(bytes)), shown(text));
        EXPECT_EQ(&bytes.operator const ZString&(), &bytes);
    }
    EXPECT_EQ(shown(ZMBString(units(u"a\xD83D").c_str())), "'a<EF><BF><BD>'");
    EXPECT_EQ(shown(ZUString::from_utf8("a\xC3")), "'a<FFFD>'");
    for (const int n : {1, 2}) {
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZMBString(UTF16("\u00E9"))); })) << n;
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZUString::from_utf8("abc")); })) << n;
    }
}

} // namespace
