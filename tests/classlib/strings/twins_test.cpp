#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>

// What byte text and wide text have in common: each test runs for both.
namespace {

template <typename String>
class twins_test : public testing::Test {};

using twins_t = testing::Types<ZString, ZUString>;
TYPED_TEST_SUITE(twins_test, twins_t);

template <typename String>
using unit_of = decltype(String().inq_char(0));

template <typename String>
String make(const char* ascii) {
    if constexpr (std::is_same_v<String, ZString>)
        return ascii;
    else
        return wide(ascii);
}

template <typename String>
const unit_of<String>* text_of(const String& s) {
    return s;
}

TYPED_TEST(twins_test, construction_and_assignment_choose_the_form_of_an_empty_text) {
    EXPECT_EQ(shown(TypeParam()), "null");
    constexpr unit_of<TypeParam> letter = 'a';
    EXPECT_EQ(shown(TypeParam(0, letter)), "''");
    EXPECT_EQ(shown(TypeParam(3, letter)), "'aaa'");
    const auto unterminated = std::make_unique<unit_of<TypeParam>>(letter);
    EXPECT_EQ(shown(TypeParam(unterminated.get(), 1)), "'a'");

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
        TypeParam assigned = make<TypeParam>("before");
        assigned = text_of(source);
        EXPECT_EQ(shown(assigned), whole);
        assigned = source;
        EXPECT_EQ(shown(assigned), whole);
        const TypeParam& same = assigned;
        assigned = same;
        EXPECT_EQ(shown(assigned), whole);
        assigned.clear();
        EXPECT_EQ(shown(assigned), "null");
    }
}

TYPED_TEST(twins_test, a_range_of_a_text_is_clamped) {
    using row_t = std::tuple<int, int, const char*>;
    // In the last row, what is lacking to 0 makes the count negative: up to the end.
    const row_t rows[] = {{4, 4, "'name'"},
                          {-4, -1, "'name'"},
                          {-4, 2, "'na'"},
                          {-10, 4, "'fi'"},
                          {2, 100, "'lename'"},
                          {8, 1, "null"},
                          {9, -1, "null"},
                          {3, 0, "null"},
                          {-9, 1, "null"},
                          {1, INT_MAX, "'ilename'"},
                          {INT_MAX, INT_MAX, "null"},
                          {INT_MIN, INT_MIN, "'filename'"},
                          {-10, 1, "'filename'"}};
    const TypeParam text = make<TypeParam>("filename");
    for (const auto& [start, count, want] : rows) {
        SCOPED_TRACE(testing::Message() << start << ", " << count);
        EXPECT_EQ(shown(TypeParam(text_of(text), start, count)), want);
        EXPECT_EQ(shown(TypeParam(text, start, count)), want);
        EXPECT_EQ(shown(text.sub_string(start, count)), want);
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
        EXPECT_EQ(a == b, order == 0);
        EXPECT_EQ(a == text_of(b), order == 0);
        EXPECT_EQ(a.is_equal(b), order == 0);
        EXPECT_EQ(a.is_equal_no_case(b), order_without_case == 0);
        EXPECT_EQ(a < b, order < 0);
        EXPECT_EQ(a > b, order > 0);
    }
}

TYPED_TEST(twins_test, search) {
    using row_t = std::tuple<const char*, const char*, int, int>;
    const row_t rows[] = {{"a.b.c", ".", 2, 3},  {"a.b.c", ".", 4, -1},    {"a.b.c", ".", 9, -1},
                          {"abcbc", "bc", 2, 3}, {"abcbc", "bcd", 3, -1},  {"abcbc", "", 2, 2},
                          {"abcbc", "", 5, -1},  {"abc", nullptr, 2, 2},   {"", "", 0, -1},
                          {nullptr, ".", 0, -1}, {nullptr, nullptr, 0, -1}};
    for (const auto& [text, search, start, want] : rows) {
        SCOPED_TRACE(testing::Message() << shown(text) << ", " << shown(search) << ", " << start);
        const TypeParam s = make<TypeParam>(search);
        EXPECT_EQ(make<TypeParam>(text).find(text_of(s), start), want);
        if (s.length() == 1) {
            EXPECT_EQ(make<TypeParam>(text).find(s.inq_char(0), start), want);
        }
    }
    EXPECT_EQ(make<TypeParam>("a.b.c").find_last('.'), 3);
    EXPECT_EQ(TypeParam().find_last('.'), -1);
    EXPECT_EQ(make<TypeParam>("ab").inq_char(1), 'b');
    for (const int outside : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(make<TypeParam>("ab").inq_char(outside), 0) << outside;
        EXPECT_EQ(TypeParam().inq_char(outside), 0) << outside;
    }
}

TYPED_TEST(twins_test, concatenation) {
    using row_t = std::tuple<const char*, const char*, const char*>;
    const row_t rows[] = {{nullptr, nullptr, "null"}, {nullptr, "", "''"}, {"", nullptr, "''"},
                          {nullptr, "b", "'b'"},      {"", "bc", "'bc'"},  {"a", nullptr, "'a'"},
                          {"ab", "cde", "'abcde'"}};
    for (const auto& [first, second, want] : rows) {
        SCOPED_TRACE(shown(first) + " + " + shown(second));
        const TypeParam a = make<TypeParam>(first);
        const TypeParam b = make<TypeParam>(second);
        EXPECT_EQ(shown(a + b), want);
        EXPECT_EQ(shown(a + text_of(b)), want);
        EXPECT_EQ(shown(text_of(a) + b), want);
        TypeParam appended = a;
        EXPECT_EQ(shown(appended += b), want);
        appended = a;
        EXPECT_EQ(shown(appended += text_of(b)), want);
    }
    constexpr unit_of<TypeParam> none = 0;
    constexpr unit_of<TypeParam> letter = 'b';
    EXPECT_EQ(shown((make<TypeParam>("a") + letter + none) += none), "'ab'");
    EXPECT_EQ(shown(TypeParam() += none), "null");
}

TYPED_TEST(twins_test, counted_appending_never_leaves_null) {
    using row_t = std::tuple<const char*, const char*, int, const char*>;
    const row_t rows[] = {{"a", "xyz", 2, "'axy'"}, {"a", "xyz", 5, "'axyz'"}, {"a", "xyz", -1, "'axyz'"},
                          {"a", nullptr, 2, "'a'"}, {nullptr, "xyz", 0, "''"}, {nullptr, "xyz", 1, "'x'"}};
    for (const auto& [old, text, count, want] : rows) {
        TypeParam s = make<TypeParam>(old);
        s.append(make<TypeParam>(text), count);
        EXPECT_EQ(shown(s), want) << shown(text) << ", " << count;
    }
}

TYPED_TEST(twins_test, replacement) {
    using row_t = std::tuple<const char*, const char*, const char*, const char*>;
    const row_t rows[] = {{"C:/a/b", "/", "\\", "'C:\\a\\b'"},
                          {"aaa", "aa", "b", "'ba'"},
                          {"\r\r", "\r", "", "null"},
                          {"\r\r", "\r", nullptr, "null"},
                          {"ab", "b", "bb", "'abb'"},
                          {"abc", "abcd", "y", "'abc'"},
                          {"", "x", "yy", "null"},
                          {nullptr, "x", "yy", "null"},
                          {"xax", "x", "123", "'123a123'"}};
    for (const auto& [text, search, replacement, want] : rows) {
        TypeParam s = make<TypeParam>(text);
        s.replace(make<TypeParam>(search), make<TypeParam>(replacement));
        EXPECT_EQ(shown(s), want) << shown(text) << ", " << search;
    }
    for (const char* const text : {"abc", "", static_cast<const char*>(nullptr)}) {
        recording_reporter reporter;
        TypeParam s = make<TypeParam>(text);
        s.replace(TypeParam(), make<TypeParam>("x"));
        EXPECT_EQ(shown(s), shown(text));
        const std::string file = std::is_same_v<TypeParam, ZString> ? "ZString" : "ZUString";
        EXPECT_EQ(reporter.take_without_lines(), "assertion " + file + ": search_len > 0;");
    }
}

TYPED_TEST(twins_test, changes_allocate_the_exact_size_once_or_fail_as_promised) {
    using unit_t = unit_of<TypeParam>;
    // Each changes 'abc' by 'b' or by a piece of itself; then what is left without memory.
    using change_t = void (*)(TypeParam & s, const unit_t* own, const TypeParam& b);
    using row_t = std::tuple<change_t, std::string, const char*>;
    const row_t rows[] = {
        {[](TypeParam& s, const unit_t*, const TypeParam& b) { s = b; }, "'b'", "null"},
        {[](TypeParam& s, const unit_t*, const TypeParam& b) { s = text_of(b); }, "'b'", "null"},
        {[](TypeParam& s, const unit_t* own, const TypeParam&) { s = own + 2; }, "'c'", "null"},
        {[](TypeParam& s, const unit_t*, const TypeParam&) { s += s; }, "'abcabc'", "'abc'"},
        {[](TypeParam& s, const unit_t* own, const TypeParam&) { s += own + 1; }, "'abcbc'", "'abc'"},
        {[](TypeParam& s, const unit_t*, const TypeParam&) { s += unit_t('!'); }, "'abc!'", "'abc'"},
        {[](TypeParam& s, const unit_t* own, const TypeParam&) { s.append(own + 1, 1); }, "'abcb'", "'abc'"},
        {[](TypeParam& s, const unit_t*, const TypeParam& b) { s.replace(s, b); }, "'b'", "'abc'"},
        {[](TypeParam& s, const unit_t*, const TypeParam& b) { s.replace(b, s); }, "'aabcc'", "'abc'"},
        {[](TypeParam& s, const unit_t*, const TypeParam&) { s.replace(s, s); }, "'abc'", "'abc'"}};
    const TypeParam b = make<TypeParam>("b");
    for (const auto& [change, want, left] : rows) {
        SCOPED_TRACE(want);
        TypeParam s = make<TypeParam>("abc");
        {
            const allocation_meter::section section(0);
            change(s, s, b);
            EXPECT_EQ(section.inq_asked(), 1);
            EXPECT_EQ(section.inq_bytes(), (want.size() - 1) * sizeof(unit_t)); // quotes off, 0 on
        }
        EXPECT_EQ(shown(s), want);
        s = make<TypeParam>("abc");
        EXPECT_TRUE(runs_out_of_memory(1, [&, change = change] { change(s, s, b); }));
        EXPECT_EQ(shown(s), left);
    }
}

TYPED_TEST(twins_test, running_out_of_memory_leaks_nothing_and_changes_no_operand) {
    using row_t = TypeParam (*)(const TypeParam& s);
    const row_t rows[] = {[](const TypeParam& s) { return s + s; },
                          [](const TypeParam& s) { return text_of(s) + s; },
                          [](const TypeParam& s) { return s.left(2); },
                          [](const TypeParam& s) { return s.right(9); },
                          [](const TypeParam& s) { return s.mid(1, 2); },
                          [](const TypeParam& s) { return s.sub_string(1, 2); },
                          [](const TypeParam& s) {
                              TypeParam copy(s);
                              copy.lf_to_crlf();
                              return copy;
                          }};
    const TypeParam s = make<TypeParam>("a\r\nb");
    for (const row_t& row : rows) {
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            const allocation_meter::section section(n);
            try {
                EXPECT_GT(row(s).length(), 0);
                has_failed = false;
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(section.inq_failed());
            }
            EXPECT_EQ(section.inq_held(), 0) << &row - rows << ", " << n;
            EXPECT_EQ(shown(s), "'a<0D><0A>b'");
        }
    }
}

TYPED_TEST(twins_test, changes_of_the_whole_text) {
    using row_t = std::tuple<const char*, void (TypeParam::*)(), const char*>;
    constexpr auto trim = static_cast<void (TypeParam::*)()>(&TypeParam::trim);
    constexpr auto upper = &TypeParam::to_upper;
    constexpr auto lower = &TypeParam::to_lower;
    constexpr auto strip = &TypeParam::strip_cr;
    constexpr auto add_cr = &TypeParam::lf_to_crlf;
    const row_t rows[] = {{"  a b  ", trim, "'a b'"},
                          {"\t\n\v\f\r ", trim, "null"},
                          {"a ", trim, "'a'"},
                          {"", trim, "null"},
                          {nullptr, trim, "null"},
                          {"`aZ{@[1", upper, "'`AZ{@[1'"},
                          {"`aZ{@[1", lower, "'`az{@[1'"},
                          {nullptr, upper, "null"},
                          {"a\r\nb\r", strip, "'a<0A>b'"},
                          {"\r\n", add_cr, "'<0D><0D><0A>'"},
                          {nullptr, add_cr, "null"}};
    for (const auto& [text, change, want] : rows) {
        TypeParam s = make<TypeParam>(text);
        (s.*change)();
        EXPECT_EQ(shown(s), want) << shown(text);
    }
}

TYPED_TEST(twins_test, parts_of_a_text) {
    const TypeParam abc = make<TypeParam>("abc");
    const TypeParam null;
    using row_t = std::tuple<TypeParam, const char*>;
    const row_t rows[] = {
        {abc.left(2), "'ab'"},   {abc.left(9), "'abc'"},   {null.left(2), "''"},
        {abc.right(2), "'bc'"},  {abc.right(0), "''"},     {abc.right(9), "'abc'"},
        {null.right(2), "null"}, {abc.mid(1, 2), "'bc'"},  {abc.mid(2, 5), "'abc'"},
        {abc.mid(3, 0), "''"},   {null.mid(0, 1), "null"}, {abc.mid(INT_MAX, INT_MAX), "'abc'"}};
    for (const row_t& row : rows)
        EXPECT_EQ(shown(std::get<0>(row)), std::get<1>(row)) << "row " << &row - rows;
}

TYPED_TEST(twins_test, fractions) {
    using row_t = std::tuple<const char*, bool, double>;
    const row_t rows[] = {{" 3.5e2xyz", true, 350}, {"-.25", true, -0.25}, {"1.5.5", true, 1.5},
                          {"abc", false, 4711},     {" ", false, 4711},    {nullptr, false, 4711}};
    for (const auto& [text, is_number, want] : rows) {
        double number = 4711;
        EXPECT_EQ(make<TypeParam>(text).to_double(number), is_number) << shown(text);
        EXPECT_EQ(number, want) << shown(text);
    }
}

TYPED_TEST(twins_test, integers) {
    using row_t = std::tuple<const char*, std::int64_t, int>;
    const row_t rows[] = {{"0", 0, 10},
                          {"\t\n -7", -7, 10},
                          {"007", 7, 10},
                          {"12abc", 12, 10},
                          {"-0x1F", -31, 16},
                          {"0XaBcDeF", 0xABCDEF, 16},
                          {"0x1G", 1, 16},
                          {"0b101", 5, 2},
                          {"-0B12", -1, 2},
                          {"9223372036854775807", INT64_MAX, 10},
                          {"9223372036854775808", INT64_MIN, 10},
                          {"0xFFFFFFFFFFFFFFFFF", -1, 16}};
    std::int64_t value = 0;
    int base = 0;
    for (const auto& [text, want, want_base] : rows) {
        EXPECT_TRUE(make<TypeParam>(text).to_int64(value, &base)) << text;
        EXPECT_EQ(value, want) << text;
        EXPECT_EQ(base, want_base) << text;
    }
    value = base = 4711;
    for (const char* const none : {"0b", "0xx1", "0b2", "0x", "- 5", "+5", "--5", "-", "   ", "", "x12",
                                   static_cast<const char*>(nullptr)})
        EXPECT_FALSE(make<TypeParam>(none).to_int64(value, &base) || value != 4711 || base != 4711)
            << shown(none);
}

TYPED_TEST(twins_test, integers_that_do_not_fit_are_refused_but_tell_their_base) {
    using row_t = std::tuple<const char*, bool, bool>;
    const row_t rows[] = {{"2147483647", true, true},   {"2147483648", false, true},
                          {"-2147483648", true, false}, {"-2147483649", false, false},
                          {"4294967295", false, true},  {"4294967296", false, false},
                          {"-1", true, false},          {"18446744073709551617", true, true}};
    for (const auto& [text, fits_int, fits_uint] : rows) {
        int value = 4711;
        unsigned int unsigned_value = 4711;
        int base = 0;
        EXPECT_EQ(make<TypeParam>(text).to_int(value, &base), fits_int) << text;
        EXPECT_EQ(value != 4711, fits_int) << text;
        EXPECT_EQ(base, 10) << text;
        EXPECT_EQ(make<TypeParam>(text).to_uint(unsigned_value, nullptr), fits_uint) << text;
        EXPECT_EQ(unsigned_value != 4711, fits_uint) << text;
    }
}

} // namespace
