#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

namespace {

// What byte text and wide text have in common: each test of this suite runs for both.
template <typename String>
class twins_test : public testing::Test {};

using twins_t = testing::Types<ZString, ZUString>;
TYPED_TEST_SUITE(twins_test, twins_t);

template <typename String>
using unit_of = decltype(String().inq_char(0));

// Of the null form for a null text.
template <typename String>
String make(const char* ascii) {
    return ascii != nullptr ? String(ascii) : String();
}

template <typename String>
const unit_of<String>* text_of(const String& s) {
    return s;
}

TYPED_TEST(twins_test, construction_and_assignment_choose_the_form_of_an_empty_text) {
    const auto unterminated = std::make_unique<unit_of<TypeParam>>('a');
    EXPECT_EQ(shown(TypeParam(unterminated.get(), 1)), "'a'");
    EXPECT_EQ(shown(TypeParam(0, *unterminated)), "''");
    using row_t = std::tuple<const char*, int, const char*, const char*>;
    const row_t rows[] = {{nullptr, -1, "null", "null"}, {nullptr, 3, "null", "null"},
                          {"", -1, "''", "''"},          {"", 0, "null", "''"},
                          {"ab", 0, "null", "'ab'"},     {"ab", 1, "'a'", "'ab'"},
                          {"ab", -1, "'ab'", "'ab'"},    {"ab", INT_MAX, "'ab'", "'ab'"}};
    for (const auto& [ascii, count, counted, whole] : rows) {
        SCOPED_TRACE(testing::Message() << count << " of " << whole);
        const TypeParam source = make<TypeParam>(ascii);
        EXPECT_EQ(shown(source), whole);
        EXPECT_EQ(shown(TypeParam(text_of(source), count)), counted);
        EXPECT_EQ(shown(TypeParam(source, count)), counted);
        TypeParam assigned("before");
        EXPECT_EQ(shown(assigned = text_of(source)), whole);
        EXPECT_EQ(shown(assigned = source), whole);
        EXPECT_EQ(shown(assigned = std::as_const(assigned)), whole);
        assigned.clear();
        EXPECT_EQ(shown(assigned), "null");
    }
}

TYPED_TEST(twins_test, a_range_of_a_text_is_clamped) {
    using row_t = std::tuple<int, int, const char*>;
    // In the last row, what is lacking to 0 makes the count negative: up to the end.
    constexpr int max = INT_MAX;
    constexpr int min = INT_MIN;
    const row_t rows[] = {{4, 4, "'name'"},      {-4, -1, "'name'"},       {-4, 2, "'na'"},
                          {-10, 4, "'fi'"},      {2, 100, "'lename'"},     {8, 1, "null"},
                          {9, -1, "null"},       {3, 0, "null"},           {1, max, "'ilename'"},
                          {max, max, "null"},    {min, min, "'filename'"}, {-9, 1, "null"},
                          {-10, 1, "'filename'"}};
    const TypeParam text("filename");
    for (const auto& [start, count, want] : rows) {
        EXPECT_EQ(shown(TypeParam(text_of(text), start, count)), want) << start << ", " << count;
        EXPECT_EQ(shown(text.sub_string(start, count)), want) << start << ", " << count;
    }
    EXPECT_EQ(shown(TypeParam(text_of(TypeParam()), -3, 3)), "null");
}

TYPED_TEST(twins_test, comparison) {
    using row_t = std::tuple<const char*, const char*, int, int>;
    const row_t rows[] = {{nullptr, "", 0, 0},  {"", "abc", -1, -1},   {"abc", "abc", 0, 0},
                          {"a", "abc", -1, -1}, {"ABC", "abc", -1, 0}, {"B", "a", -1, 1},
                          {"_", "A", 1, -1}};
    for (const auto& [first, second, order, order_without_case] : rows) {
        SCOPED_TRACE(shown(first) + " and " + shown(second));
        const TypeParam a = make<TypeParam>(first);
        const TypeParam b = make<TypeParam>(second);
        EXPECT_EQ(a.compare(b), order);
        EXPECT_EQ(b.compare(a), -order);
        EXPECT_EQ(a.compare_no_case(b), order_without_case);
        EXPECT_EQ(b.compare_no_case(a), -order_without_case);
        EXPECT_EQ(a == b && a == text_of(b) && a.is_equal(b), order == 0);
        EXPECT_EQ(a == b || a == text_of(b) || a.is_equal(b), order == 0);
        EXPECT_EQ(a.is_equal_no_case(b), order_without_case == 0);
        EXPECT_EQ((a > b) - (a < b), order);
    }
}

TYPED_TEST(twins_test, search) {
    using row_t = std::tuple<const char*, const char*, int, int>;
    const row_t rows[] = {{"a.b.c", ".", 2, 3},  {"a.b.c", ".", 4, -1},     {"a.b.c", ".", 9, -1},
                          {"abcbc", "bc", 2, 3}, {"abcbc", "bcd", 3, -1},   {"abcbc", "", 2, 2},
                          {"abcbc", "", 5, -1},  {"abc", nullptr, 2, 2},    {"", "", 0, -1},
                          {nullptr, ".", 0, -1}, {nullptr, nullptr, 0, -1}, {"a.b.c", ".", -1, 1}};
    for (const auto& [text, search, start, want] : rows) {
        SCOPED_TRACE(testing::Message() << shown(text) << ", " << shown(search) << ", " << start);
        const TypeParam s = make<TypeParam>(search);
        EXPECT_EQ(make<TypeParam>(text).find(text_of(s), start), want);
        EXPECT_TRUE(s.length() != 1 || make<TypeParam>(text).find(s.inq_char(0), start) == want);
    }
    EXPECT_EQ(TypeParam("a.b.c").find_last('.'), 3);
    EXPECT_EQ(TypeParam().find_last('.'), -1);
    EXPECT_EQ(TypeParam("ab").inq_char(1), 'b');
    for (const int outside : {-1, 2, 3, INT_MIN, INT_MAX})
        EXPECT_EQ(TypeParam("ab").inq_char(outside) + TypeParam().inq_char(outside), 0) << outside;
}

TYPED_TEST(twins_test, concatenation) {
    using row_t = std::tuple<const char*, const char*, const char*>;
    const row_t rows[] = {{nullptr, nullptr, "null"}, {nullptr, "", "''"}, {"", nullptr, "''"},
                          {nullptr, "b", "'b'"},      {"", "bc", "'bc'"},  {"a", nullptr, "'a'"},
                          {"ab", "cde", "'abcde'"}};
    for (const auto& [first, second, want] : rows) {
        SCOPED_TRACE(want);
        const TypeParam a = make<TypeParam>(first);
        const TypeParam b = make<TypeParam>(second);
        EXPECT_EQ(shown(a + b), want);
        EXPECT_EQ(shown(a + text_of(b)), want);
        EXPECT_EQ(shown(text_of(a) + b), want);
        EXPECT_EQ(shown(TypeParam(a) += b), want);
        EXPECT_EQ(shown(TypeParam(a) += text_of(b)), want);
    }
    constexpr unit_of<TypeParam> none = 0;
    EXPECT_EQ(shown((TypeParam("a") + none) += none), "'a'");
    EXPECT_EQ(shown(TypeParam() += none), "null");
}

TYPED_TEST(twins_test, changes_and_parts) {
    using S = TypeParam;
    using row_t = std::tuple<const char*, void (*)(S & s), const char*>;
    const row_t rows[] = {
        {"  a b  ", [](S& s) { s.trim(); }, "'a b'"},
        {"\t\n\v\f\r ", [](S& s) { s.trim(); }, "null"},
        {nullptr, [](S& s) { s.trim(); }, "null"},
        {"`aZ{@[1", [](S& s) { s.to_upper(); }, "'`AZ{@[1'"},
        {"`aZ{@[1", [](S& s) { s.to_lower(); }, "'`az{@[1'"},
        {"a\r\nb\r", [](S& s) { s.strip_cr(); }, "'a<0A>b'"},
        {"\r\n", [](S& s) { s.lf_to_crlf(); }, "'<0D><0D><0A>'"},
        {"aaa", [](S& s) { s.replace("aa", "b"); }, "'ba'"},
        {"xax", [](S& s) { s.replace("x", "123"); }, "'123a123'"},
        {"\r\r", [](S& s) { s.replace("\r", S()); }, "null"},
        {nullptr, [](S& s) { s.replace("x", "yy"); }, "null"},
        {"a", [](S& s) { s.append(S("xyz"), 2); }, "'axy'"},
        {"a", [](S& s) { s.append(S("xyz"), -1); }, "'axyz'"},
        {nullptr, [](S& s) { s.append(S("xyz"), 0); }, "''"},
        {"abc", [](S& s) { s = s.left(9); }, "'abc'"},
        {nullptr, [](S& s) { s = s.left(2); }, "''"},
        {"abc", [](S& s) { s = s.right(9); }, "'abc'"},
        {nullptr, [](S& s) { s = s.right(2); }, "null"},
        {"abc", [](S& s) { s = s.mid(2, 5); }, "'abc'"},
        {"abc", [](S& s) { s = s.mid(INT_MAX, INT_MAX); }, "'abc'"},
        {nullptr, [](S& s) { s = s.mid(0, 1); }, "null"},
    };
    for (const auto& [text, change, want] : rows) {
        S s = make<S>(text);
        change(s);
        EXPECT_EQ(shown(s), want) << "row " << &text - &std::get<0>(rows[0]);
    }
    recording_reporter reporter;
    S s("abc");
    s.replace(S(), "x");
    EXPECT_EQ(shown(s), "'abc'");
    EXPECT_TRUE(reporter.take().ends_with("String: search_len > 0;"));
}

TYPED_TEST(twins_test, changes_allocate_the_exact_size_once_or_fail_as_promised) {
    using S = TypeParam;
    using unit_t = unit_of<S>;
    // Each changes 'abc' by 'b' or by a piece of itself; then what is left without memory.
    using change_t = void (*)(S & s, const unit_t* own, const S& b);
    using row_t = std::tuple<change_t, std::string, const char*>;
    const row_t rows[] = {
        {[](S& s, const unit_t*, const S& b) { s = b; }, "'b'", "null"},
        {[](S& s, const unit_t* own, const S&) { s = own + 2; }, "'c'", "null"},
        {[](S& s, const unit_t*, const S&) { s += s; }, "'abcabc'", "'abc'"},
        {[](S& s, const unit_t* own, const S&) { s += own + 1; }, "'abcbc'", "'abc'"},
        {[](S& s, const unit_t*, const S&) { s += unit_t('!'); }, "'abc!'", "'abc'"},
        {[](S& s, const unit_t* own, const S&) { s.append(own + 1, 1); }, "'abcb'", "'abc'"},
        {[](S& s, const unit_t*, const S& b) { s.replace(s, b); }, "'b'", "'abc'"},
        {[](S& s, const unit_t*, const S& b) { s.replace(b, s); }, "'aabcc'", "'abc'"},
        {[](S& s, const unit_t*, const S& b) { s = s + b; }, "'abcb'", "'abc'"},
        {[](S& s, const unit_t*, const S&) { s = s + unit_t('!'); }, "'abc!'", "'abc'"},
        {[](S& s, const unit_t*, const S&) { s = s.left(2); }, "'ab'", "'abc'"},
        {[](S& s, const unit_t*, const S&) { s = s.mid(1, 2); }, "'bc'", "'abc'"},
    };
    const S b("b");
    for (const auto& [change, want, left] : rows) {
        SCOPED_TRACE(&want - &std::get<1>(rows[0]));
        S s("abc");
        {
            const allocation_meter::section section(0);
            change(s, s, b);
            EXPECT_EQ(section.inq_asked(), 1);
            EXPECT_EQ(section.inq_bytes(), (want.size() - 1) * sizeof(unit_t)); // quotes off, 0 on
        }
        EXPECT_EQ(shown(s), want);
        s = S("abc");
        EXPECT_TRUE(runs_out_of_memory(1, [&, change = change] { change(s, s, b); }));
        EXPECT_EQ(shown(s), left);
    }
    for (const int n : {1, 2})
        EXPECT_TRUE(runs_out_of_memory(n, [&] { static_cast<void>(text_of(b) + b); })) << n;
}

TYPED_TEST(twins_test, fractions) {
    using row_t = std::tuple<const char*, bool, double>;
    for (const auto& [text, is_number, want] : {row_t{" 3.5e2xyz", true, 350},
                                                {"-.25", true, -0.25},
                                                {"abc", false, 4711},
                                                {nullptr, false, 4711}}) {
        double number = 4711;
        EXPECT_EQ(make<TypeParam>(text).to_double(number), is_number) << shown(text);
        EXPECT_EQ(number, want) << shown(text);
    }
}

TYPED_TEST(twins_test, integers) {
    using row_t = std::tuple<const char*, std::int64_t, int>;
    constexpr std::int64_t old = 4711;
    const row_t rows[] = {{"2147483647", 2147483647, 10},         {"0", 0, 10},        {"0b", old, 0},
                          {"2147483648", 2147483648, 10},         {"\t\n -7", -7, 10}, {"0xx1", old, 0},
                          {"-2147483648", -2147483648, 10},       {"12abc", 12, 10},   {"0b2", old, 0},
                          {"-2147483649", -2147483649, 10},       {"-0x1F", -31, 16},  {"- 5", old, 0},
                          {"4294967295", 4294967295, 10},         {"0x1G", 1, 16},     {"+5", old, 0},
                          {"4294967296", 4294967296, 10},         {"0b101", 5, 2},     {"--5", old, 0},
                          {"9223372036854775807", INT64_MAX, 10}, {"-0B12", -1, 2},    {"  ", old, 0},
                          {"9223372036854775808", INT64_MIN, 10}, {"007", 7, 10},      {"x12", old, 0},
                          {"0xFFFFFFFFFFFFFFFFF", -1, 16},        {"0Xa", 10, 16},     {nullptr, old, 0}};
    for (const auto& [text, want, want_base] : rows) {
        SCOPED_TRACE(shown(text));
        const TypeParam s = make<TypeParam>(text);
        std::int64_t value = old;
        int int_value = old;
        unsigned int uint_value = old;
        int base = 0;
        EXPECT_EQ(s.to_int64(value, nullptr), want_base != 0);
        EXPECT_EQ(value, want);
        EXPECT_EQ(s.to_int(int_value, &base), want_base != 0 && std::in_range<int>(want));
        EXPECT_EQ(base, want_base); // which a number tells even when it does not fit
        EXPECT_EQ(int_value, std::in_range<int>(want) ? want : old);
        EXPECT_EQ(s.to_uint(uint_value, nullptr), want_base != 0 && std::in_range<unsigned int>(want));
        EXPECT_EQ(uint_value, std::in_range<unsigned int>(want) ? want : old);
    }
}

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
