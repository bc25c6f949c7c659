#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr const utf16_t* no_text = nullptr;

constexpr utf16_t unit(char16_t c) {
    return c;
}

// Bytes with their zeros.
std::string bytes_of(const ZString& s, std::size_t n) {
    return {static_cast<const char*>(s), n};
}

int sign(int value) {
    return (value > 0) - (value < 0);
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
    struct row_t {
        const char* a;
        const char* b;
        int order;
        int order_without_case;
    };
    constexpr row_t rows[] = {{nullptr, nullptr, 0, 0}, {nullptr, "", 0, 0},   {"", "", 0, 0},
                              {nullptr, "abc", -1, -1}, {"", "abc", -1, -1},   {"abc", "abc", 0, 0},
                              {"ab", "abc", -1, -1},    {"ABC", "abc", -1, 0}, {"B", "a", -1, 1},
                              {"_", "A", 1, -1},        {"[", "a", -1, -1}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(testing::Message() << shown(wide(row.a)) << " and " << shown(wide(row.b)));
        const ZUString a = wide(row.a);
        const ZUString b = wide(row.b);
        EXPECT_EQ(sign(a.compare(b)), row.order);
        EXPECT_EQ(sign(b.compare(a)), -row.order);
        EXPECT_EQ(sign(a.compare_no_case(b)), row.order_without_case);
        EXPECT_EQ(sign(b.compare_no_case(a)), -row.order_without_case);
        EXPECT_EQ(a == b, row.order == 0);
        EXPECT_EQ(a == static_cast<const utf16_t*>(b), row.order == 0);
        EXPECT_EQ(a.is_equal(b), row.order == 0);
        EXPECT_EQ(a.is_equal_no_case(b), row.order_without_case == 0);
        EXPECT_EQ(a < b, row.order < 0);
        EXPECT_EQ(a > b, row.order > 0);
    }
    EXPECT_EQ(ZUString().compare(wide("abc")), -1);
    EXPECT_EQ(wide("abc").compare(ZUString()), 1);
    EXPECT_LT(wide("\x7F").compare(UTF16("\u8001")), 0); // units are unsigned
    EXPECT_NE(ZUString(UTF16("\u00C9")).compare_no_case(UTF16("\u00E9")), 0);
}

TEST(wide_strings, search) {
    struct row_t {
        const char* text;
        const char* search;
        int start;
        int want;
    };
    constexpr row_t rows[] = {{"a.b.c", ".", 0, 1},     {"a.b.c", ".", 2, 3},    {"a.b.c", ".", 4, -1},
                              {"a.b.c", ".", 9, -1},    {"abcbc", "bc", 0, 1},   {"abcbc", "bc", 2, 3},
                              {"abcbc", "bc", 4, -1},   {"abcbc", "bcd", 3, -1}, {"abcbc", "", 2, 2},
                              {"abcbc", nullptr, 4, 4}, {"abcbc", "", 5, -1},    {"", "", 0, -1},
                              {"", ".", 0, -1},         {nullptr, ".", 0, -1},   {nullptr, nullptr, 0, -1}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << shown(wide(row.text)) << ", " << shown(wide(row.search)) << ", " << row.start);
        const ZUString search = wide(row.search);
        EXPECT_EQ(wide(row.text).find(static_cast<const utf16_t*>(search), row.start), row.want);
        if (search.length() == 1) {
            EXPECT_EQ(wide(row.text).find(search.inq_char(0), row.start), row.want);
        }
    }
    EXPECT_EQ(wide("a.b.c").find_last(unit(u'.')), 3);
    EXPECT_EQ(wide("abc").find_last(unit(u'.')), -1);
    EXPECT_EQ(wide("").find_last(unit(u'.')), -1);
    EXPECT_EQ(ZUString().find_last(unit(u'.')), -1);
    EXPECT_EQ(ZUString(UTF16("\u0141")).find(unit(u'A'), 0), -1); // the low byte is not the unit
}

TEST(wide_strings, single_units_and_lengths) {
    const ZUString s(UTF16("a\u20AC"));
    EXPECT_EQ(s.inq_char(0), unit(u'a'));
    EXPECT_EQ(s.inq_char(1), unit(u'\u20AC'));
    for (const int outside : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(s.inq_char(outside), 0) << outside;
        EXPECT_EQ(ZUString().inq_char(outside), 0) << outside;
    }
    EXPECT_EQ(s.length(), 2);
    EXPECT_EQ(s.inq_length(), 2);
    EXPECT_EQ(ZUString().length(), 0);
    EXPECT_EQ(wide("").length(), 0);
}

TEST(wide_strings, concatenation) {
    struct row_t {
        const char* a;
        const char* b;
        const char* want;
    };
    constexpr row_t rows[] = {
        {nullptr, nullptr, "null"}, {nullptr, "", "''"}, {"", nullptr, "''"},   {"", "", "''"},
        {nullptr, "b", "'b'"},      {"", "bc", "'bc'"},  {"a", nullptr, "'a'"}, {"a", "", "'a'"},
        {"ab", "cde", "'abcde'"}};
    for (const row_t& row : rows) {
        const ZUString a = wide(row.a);
        const ZUString b = wide(row.b);
        SCOPED_TRACE(testing::Message() << shown(a) << " + " << shown(b));
        const utf16_t* const text = b;
        EXPECT_EQ(shown(a + b), row.want);
        EXPECT_EQ(shown(a + text), row.want);
        EXPECT_EQ(shown(static_cast<const utf16_t*>(a) + b), row.want);
        ZUString by_string = a;
        ZUString by_text = a;
        EXPECT_EQ(shown((by_string += b) << no_text), row.want);
        EXPECT_EQ(shown((by_text << text) += no_text), row.want);
        EXPECT_EQ(shown(a), shown(wide(row.a)));
    }
    ZUString s = wide("a") + unit(u'b') + unit(0);
    s += unit(u'c');
    s += unit(0);
    EXPECT_EQ(shown(s), "'abc'");
    EXPECT_EQ(shown(ZUString() += unit(u'x')), "'x'");
    EXPECT_EQ(shown(ZUString() += unit(0)), "null");
}

TEST(wide_strings, counted_appending_never_leaves_null) {
    struct row_t {
        const char* old;
        const char* text;
        int count;
        const char* want;
    };
    constexpr row_t rows[] = {
        {"a", "xyz", 2, "'axy'"},    {"a", "xyz", 5, "'axyz'"},  {"a", "xyz", -1, "'axyz'"},
        {"a", "xyz", 0, "'a'"},      {"a", nullptr, 2, "'a'"},   {nullptr, "xyz", 0, "''"},
        {nullptr, nullptr, 0, "''"}, {nullptr, "xyz", 1, "'x'"}, {"", nullptr, -1, "''"}};
    for (const row_t& row : rows) {
        ZUString s = wide(row.old);
        s.append(wide(row.text), row.count);
        EXPECT_EQ(shown(s), row.want) << shown(wide(row.text)) << ", " << row.count;
    }
}

TEST(wide_strings, replacement) {
    struct row_t {
        const char* text;
        const char* search;
        const char* replacement;
        const char* want;
    };
    constexpr row_t rows[] = {{"C:/a/b", "/", "\\", "'C:\\a\\b'"}, {"aaaa", "aa", "b", "'bb'"},
                              {"aaa", "aa", "b", "'ba'"},          {"\r\r", "\r", "", "null"},
                              {"\r\r", "\r", nullptr, "null"},     {"ab", "b", "bb", "'abb'"},
                              {"abcabc", "bc", "", "'aa'"},        {"abc", "x", "yy", "'abc'"},
                              {"abc", "abcd", "y", "'abc'"},       {"", "x", "yy", "null"},
                              {nullptr, "x", "yy", "null"},        {"xax", "x", "123", "'123a123'"}};
    for (const row_t& row : rows) {
        ZUString s = wide(row.text);
        s.replace(wide(row.search), wide(row.replacement));
        EXPECT_EQ(shown(s), row.want) << shown(wide(row.text)) << ", " << row.search;
    }
}

TEST(wide_strings, an_empty_search_is_reported_and_changes_nothing) {
    for (const char* const text : {"abc", "", static_cast<const char*>(nullptr)}) {
        recording_reporter reporter;
        ZUString s = wide(text);
        s.replace(ZUString(), UTF16("x"));
        EXPECT_EQ(shown(s), shown(wide(text)));
        ASSERT_EQ(reporter.inq_reports().size(), 1U);
        const std::string& report = reporter.inq_reports().front();
        EXPECT_TRUE(report.starts_with("assertion ") && report.ends_with(" ZUString: search_len > 0"))
            << report;
    }
}

TEST(wide_strings, arguments_may_lie_in_the_string_itself) {
    struct row_t {
        const char* what;
        void (*change)(ZUString& s, const utf16_t* text);
        const char* want;
    };
    constexpr row_t rows[] = {
        {"+= itself", [](ZUString& s, const utf16_t*) { s += s; }, "'abcabc'"},
        {"+= its end", [](ZUString& s, const utf16_t* text) { s += text + 1; }, "'abcbc'"},
        {"<< its end", [](ZUString& s, const utf16_t* text) { s << text + 3; }, "'abc'"},
        {"append its middle", [](ZUString& s, const utf16_t* text) { s.append(text + 1, 1); }, "'abcb'"},
        {"replace itself", [](ZUString& s, const utf16_t*) { s.replace(s, UTF16("xy")); }, "'xy'"},
        {"replace by itself", [](ZUString& s, const utf16_t*) { s.replace(UTF16("b"), s); }, "'aabcc'"},
        {"replace itself by itself", [](ZUString& s, const utf16_t*) { s.replace(s, s); }, "'abc'"},
    };
    for (const row_t& row : rows) {
        ZUString s = wide("abc");
        row.change(s, s);
        EXPECT_EQ(shown(s), row.want) << row.what;
    }
}

TEST(wide_strings, changes_allocate_the_exact_size_once_or_change_nothing) {
    struct row_t {
        const char* what;
        void (*change)(ZUString& s, const ZUString& other);
        std::size_t n_units; // 0 where nothing is allocated
    };
    constexpr row_t rows[] = {
        {"+= string", [](ZUString& s, const ZUString& other) { s += other; }, 10},
        {"<< text", [](ZUString& s, const ZUString& other) { s << static_cast<const utf16_t*>(other); }, 10},
        {"+= unit", [](ZUString& s, const ZUString&) { s += unit(u'!'); }, 9},
        {"append", [](ZUString& s, const ZUString& other) { s.append(other, 1); }, 9},
        {"append nothing", [](ZUString& s, const ZUString&) { s.append(no_text, 1); }, 8},
        {"replace", [](ZUString& s, const ZUString& other) { s.replace(other, s); }, 8},
        {"trim", [](ZUString& s, const ZUString&) { s.trim(); }, 0},
        {"to_upper", [](ZUString& s, const ZUString&) { s.to_upper(); }, 0},
        {"to_lower", [](ZUString& s, const ZUString&) { s.to_lower(); }, 0},
    };
    const ZUString other = wide("yz");
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.what);
        ZUString s = wide(" aBc \t ");
        {
            const allocation_meter::section section(0);
            row.change(s, other);
            EXPECT_EQ(section.inq_asked(), row.n_units != 0 ? 1 : 0);
            EXPECT_EQ(section.inq_bytes(), row.n_units * sizeof(utf16_t));
        }
        s = wide(" aBc \t ");
        if (row.n_units != 0) {
            EXPECT_TRUE(runs_out_of_memory(1, [&] { row.change(s, other); }));
            EXPECT_EQ(shown(s), "' aBc <09> '");
        }
    }
}

TEST(wide_strings, changes_of_the_whole_text) {
    struct row_t {
        const char* text;
        void (ZUString::*change)();
        const char* want;
    };
    const auto trim = &ZUString::trim;
    const auto to_upper = &ZUString::to_upper;
    const auto to_lower = &ZUString::to_lower;
    const auto strip_cr = &ZUString::strip_cr;
    const auto lf_to_crlf = &ZUString::lf_to_crlf;
    const row_t rows[] = {
        {"  a b  ", trim, "'a b'"},
        {" \t\n\v\f\r ", trim, "null"},
        {"ab", trim, "'ab'"},
        {"a ", trim, "'a'"},
        {" a", trim, "'a'"},
        {"", trim, "null"},
        {nullptr, trim, "null"},
        {"aZ{1", to_upper, "'AZ{1'"},
        {"aZ[1", to_lower, "'az[1'"},
        {nullptr, to_upper, "null"},
        {"", to_lower, "''"},
        {"a\r\nb\r", strip_cr, "'a<0A>b'"},
        {"\r", strip_cr, "null"},
        {"a\nb", lf_to_crlf, "'a<0D><0A>b'"},
        {"a\r\nb", lf_to_crlf, "'a<0D><0D><0A>b'"},
        {nullptr, lf_to_crlf, "null"},
    };
    for (const row_t& row : rows) {
        ZUString s = wide(row.text);
        (s.*row.change)();
        EXPECT_EQ(shown(s), row.want) << shown(wide(row.text));
    }
    ZUString beyond_ascii(UTF16("\u00E9\u0131\u00FF"));
    beyond_ascii.to_upper();
    EXPECT_EQ(shown(beyond_ascii), "'<E9><131><FF>'");
}

TEST(wide_strings, parts_of_a_text) {
    const ZUString abc = wide("abc");
    EXPECT_EQ(shown(abc.left(2)), "'ab'");
    EXPECT_EQ(shown(abc.left(0)), "''");
    EXPECT_EQ(shown(abc.left(9)), "'abc'");
    EXPECT_EQ(shown(ZUString().left(2)), "''");
    EXPECT_EQ(shown(abc.right(2)), "'bc'");
    EXPECT_EQ(shown(abc.right(0)), "''");
    EXPECT_EQ(shown(abc.right(3)), "'abc'");
    EXPECT_EQ(shown(abc.right(9)), "'abc'");
    EXPECT_EQ(shown(ZUString().right(2)), "null");
    EXPECT_EQ(shown(abc.mid(1, 1)), "'b'");
    EXPECT_EQ(shown(abc.mid(1, 2)), "'bc'");
    EXPECT_EQ(shown(abc.mid(2, 5)), "'abc'"); // not clamped
    EXPECT_EQ(shown(abc.mid(3, 0)), "''");
    EXPECT_EQ(shown(abc.mid(INT_MAX, INT_MAX)), "'abc'");
    EXPECT_EQ(shown(ZUString().mid(0, 1)), "null");
    EXPECT_EQ(shown(abc.sub_string(-2, -1)), "'bc'");
    EXPECT_EQ(shown(abc), "'abc'");
}

TEST(wide_strings, numbers) {
    std::int64_t wide_value = 0;
    int value = 0;
    unsigned int unsigned_value = 0;
    int base = 0;
    EXPECT_TRUE(wide(" -0x1F").to_int64(wide_value, &base) && wide_value == -31 && base == 16);
    EXPECT_TRUE(wide("0b11").to_int(value, nullptr) && value == 3);
    EXPECT_TRUE(wide("4294967295").to_uint(unsigned_value, nullptr) && unsigned_value == 4294967295U);
    EXPECT_FALSE(wide("-1").to_uint(unsigned_value, &base));
    EXPECT_EQ(base, 10);
    EXPECT_FALSE(ZUString(UTF16("\u0131")).to_int(value, nullptr)); // its low byte is that of a digit

    struct row_t {
        const char* text;
        bool is_number;
        double want;
    };
    constexpr row_t rows[] = {{" 3.5e2xyz", true, 350}, {"-.25", true, -0.25}, {"7", true, 7},
                              {"1.5.5", true, 1.5},     {"abc", false, 0},     {"", false, 0},
                              {" ", false, 0},          {nullptr, false, 0}};
    for (const row_t& row : rows) {
        double number = 4711;
        EXPECT_EQ(wide(row.text).to_double(number), row.is_number) << shown(wide(row.text));
        EXPECT_EQ(number, row.is_number ? row.want : 4711) << shown(wide(row.text));
    }
}

TEST(byte_strings, bytes_are_stored_as_they_are) {
    ZString s("before");
    s.set_bytes("a\0b", 3);
    EXPECT_EQ(bytes_of(s, 4), std::string("a\0b\0", 4));
    EXPECT_EQ(s.length(), 1);
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

    const allocation_meter::section section(0);
    EXPECT_TRUE(s.write_bytes("!!", 2));
    EXPECT_EQ(section.inq_asked(), 1);
    EXPECT_EQ(section.inq_bytes(), 9U);
    EXPECT_TRUE(runs_out_of_memory(1, [&] { s.write_bytes("?", 1); }));
    EXPECT_EQ(shown(s), "'acd<E9>cd!!'");
}

TEST(code_pages, texts_keep_their_form) {
    struct row_t {
        ZUString text;
        const char* utf8;
    };
    const row_t rows[] = {{ZUString(), "null"},
                          {wide(""), "''"},
                          {UTF16("a\u00E9"), "'a<C3><A9>'"},
                          {UTF16("\U0001F4F7"), "'<F0><9F><93><B7>'"}};
    for (const row_t& row : rows) {
        const ZMBString bytes(row.text);
        EXPECT_EQ(shown(bytes), row.utf8);
        EXPECT_EQ(shown(ZUString::from_utf8(bytes)), shown(row.text));
        const ZString& same = bytes.operator const ZString&();
        EXPECT_EQ(&same, &bytes);
    }
    EXPECT_EQ(shown(ZMBString(units(u"a\xD83D").c_str())), "'a<EF><BF><BD>'");
    EXPECT_EQ(shown(ZUString::from_utf8("a\xC3")), "'a<FFFD>'");
}

TEST(code_pages, running_out_of_memory_is_reported_every_time) {
    const ZUString text(UTF16("a\u00E9"));
    for (int n = 1; n <= 2; ++n) {
        EXPECT_TRUE(runs_out_of_memory(n, [&] { static_cast<void>(ZMBString(text)); })) << n;
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZUString::from_utf8("abc")); })) << n;
    }
}

} // namespace
