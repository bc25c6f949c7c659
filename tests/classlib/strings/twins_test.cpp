#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "classlib/strings/integer_text.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

// What byte text and wide text have in common: each test runs for both units.
namespace {

template <typename Unit>
using string_of = std::conditional_t<std::is_same_v<Unit, char>, ZString, ZUString>;

template <typename Unit>
class twins_test : public testing::Test {
protected:
    string_of<Unit> make(const char* ascii) { return string_of<Unit>(text(ascii)); }

    // The ASCII text in this twin's units; null for null.
    const Unit* text(const char* ascii) {
        if (ascii == nullptr)
            return nullptr;
        const std::string_view view(ascii);
        return m_texts.emplace_back(view.begin(), view.end()).c_str();
    }

private:
    std::deque<std::basic_string<Unit>> m_texts;
};

struct unit_names_t {
    template <typename Unit>
    static std::string GetName(int) {
        return std::is_same_v<Unit, char> ? "bytes" : "wide";
    }
};

using units_t = testing::Types<char, utf16_t>;
TYPED_TEST_SUITE(twins_test, units_t, unit_names_t);

TYPED_TEST(twins_test, construction_and_assignment_choose_the_form_of_an_empty_text) {
    using string_t = string_of<TypeParam>;
    EXPECT_EQ(shown(string_t()), "null");
    EXPECT_EQ(shown(string_t(0, TypeParam('x'))), "''");
    EXPECT_EQ(shown(string_t(3, TypeParam('x'))), "'xxx'");

    using row_t = std::tuple<const char*, int, const char*, const char*>;
    const row_t rows[] = {{nullptr, -1, "null", "null"}, {nullptr, 0, "null", "null"},
                          {nullptr, 3, "null", "null"},  {"", -1, "''", "''"},
                          {"", 0, "null", "''"},         {"", 3, "''", "''"},
                          {"ab", -1, "'ab'", "'ab'"},    {"ab", 0, "null", "'ab'"},
                          {"ab", 1, "'a'", "'ab'"},      {"ab", INT_MAX, "'ab'", "'ab'"}};
    for (const auto& [ascii, count, counted, whole] : rows) {
        SCOPED_TRACE(testing::Message() << counted << " of " << whole);
        const TypeParam* const text = this->text(ascii);
        const string_t made(text);
        EXPECT_EQ(shown(made), whole);
        EXPECT_EQ(shown(string_t(made)), whole);
        EXPECT_EQ(shown(string_t(text, count)), counted);
        EXPECT_EQ(shown(string_t(made, count)), counted);

        string_t assigned(this->text("before"));
        assigned = text;
        EXPECT_EQ(shown(assigned), whole);
        assigned = this->text("before");
        assigned = made;
        EXPECT_EQ(shown(assigned), whole);
        assigned.clear();
        EXPECT_EQ(shown(assigned), "null");
    }
}

TYPED_TEST(twins_test, a_counted_text_needs_no_terminator) {
    const auto unit = std::make_unique<TypeParam>(TypeParam('a'));
    EXPECT_EQ(shown(string_of<TypeParam>(unit.get(), 1)), "'a'");
}

TYPED_TEST(twins_test, a_range_of_a_text_is_clamped) {
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<int, int, const char*>;
    const row_t rows[] = {{4, 4, "'name'"},
                          {-4, -1, "'name'"},
                          {-4, 2, "'na'"},
                          {-10, 4, "'fi'"},
                          {2, 100, "'lename'"},
                          {8, 1, "null"},
                          {9, -1, "null"},
                          {9, 1, "null"},
                          {3, 0, "null"},
                          {0, -1, "'filename'"},
                          {-9, 1, "null"},
                          {1, INT_MAX, "'ilename'"},
                          {INT_MAX, INT_MAX, "null"},
                          {INT_MIN, INT_MAX, "'filenam'"},
                          {INT_MIN, INT_MIN, "'filename'"},
                          // What is lacking to 0 makes the count negative: up to the end.
                          {-10, 1, "'filename'"}};
    const TypeParam* const text = this->text("filename");
    for (const auto& [start, count, want] : rows) {
        EXPECT_EQ(shown(string_t(text, start, count)), want) << start << ", " << count;
        EXPECT_EQ(shown(string_t(string_t(text), start, count)), want) << start << ", " << count;
    }
    EXPECT_EQ(shown(string_t(this->text(""), 0, -1)), "null");
    EXPECT_EQ(shown(string_t(this->text(nullptr), -3, 3)), "null");
}

TYPED_TEST(twins_test, a_string_may_be_assigned_a_piece_of_itself) {
    string_of<TypeParam> s(this->text("abcdef"));
    const string_of<TypeParam> copy(s);
    const string_of<TypeParam>& same = s;
    s = same;
    EXPECT_EQ(shown(s), "'abcdef'");
    s = static_cast<const TypeParam*>(s) + 2;
    EXPECT_EQ(shown(s), "'cdef'");
    s = static_cast<const TypeParam*>(s) + 4;
    EXPECT_EQ(shown(s), "''");
    EXPECT_EQ(shown(copy), "'abcdef'");
}

TYPED_TEST(twins_test, assignment_allocates_the_exact_size_once_or_leaves_null) {
    using string_t = string_of<TypeParam>;
    using assign_t = void (*)(string_t & s, const string_t& other);
    const assign_t rows[] = {
        [](string_t& s, const string_t& other) { s = other; },
        [](string_t& s, const string_t& other) { s = static_cast<const TypeParam*>(other); },
        [](string_t& s, const string_t&) { s = static_cast<const TypeParam*>(s) + 2; },
    };
    const string_t other(this->text("1234"));
    for (const assign_t assign : rows) {
        string_t s(this->text("abcdef"));
        {
            const allocation_meter::section section(0);
            assign(s, other);
            EXPECT_EQ(section.inq_asked(), 1);
            EXPECT_EQ(section.inq_bytes(), 5 * sizeof(TypeParam));
        }
        s = this->text("abcdef");
        EXPECT_TRUE(runs_out_of_memory(1, [&] { assign(s, other); }));
        EXPECT_EQ(shown(s), "null");
    }
}

TYPED_TEST(twins_test, comparison) {
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<string_t, string_t, int, int>;
    const row_t rows[] = {
        {this->make(nullptr), this->make(nullptr), 0, 0}, {this->make(nullptr), this->make(""), 0, 0},
        {this->make(nullptr), this->make("abc"), -1, -1}, {this->make(""), this->make("abc"), -1, -1},
        {this->make("abc"), this->make("abc"), 0, 0},     {this->make("a"), this->make("abc"), -1, -1},
        {this->make("ABC"), this->make("abc"), -1, 0},    {this->make("B"), this->make("a"), -1, 1},
        {this->make("_"), this->make("A"), 1, -1},        {this->make("z"), this->make("\xE9"), -1, -1}};
    for (const auto& [a, b, order, order_without_case] : rows) {
        SCOPED_TRACE(shown(a) + " and " + shown(b));
        EXPECT_EQ(a.compare(b), order);
        EXPECT_EQ(b.compare(a), -order);
        EXPECT_EQ(a.compare_no_case(b), order_without_case);
        EXPECT_EQ(b.compare_no_case(a), -order_without_case);
        EXPECT_EQ(a == b, order == 0);
        EXPECT_EQ(a == static_cast<const TypeParam*>(b), order == 0);
        EXPECT_EQ(a.is_equal(b), order == 0);
        EXPECT_EQ(a.is_equal_no_case(b), order_without_case == 0);
        EXPECT_EQ(a < b, order < 0);
        EXPECT_EQ(a > b, order > 0);
    }
}

TYPED_TEST(twins_test, search) {
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<const char*, const char*, int, int>;
    const row_t rows[] = {{"a.b.c", ".", 0, 1},     {"a.b.c", ".", 2, 3},    {"a.b.c", ".", 4, -1},
                          {"a.b.c", ".", 9, -1},    {"abcbc", "bc", 0, 1},   {"abcbc", "bc", 2, 3},
                          {"abcbc", "bc", 4, -1},   {"abcbc", "bcd", 3, -1}, {"abcbc", "", 2, 2},
                          {"abcbc", nullptr, 4, 4}, {"abcbc", "", 5, -1},    {"", "", 0, -1},
                          {"", ".", 0, -1},         {nullptr, ".", 0, -1},   {nullptr, nullptr, 0, -1}};
    for (const auto& [text, search, start, want] : rows) {
        SCOPED_TRACE(testing::Message() << shown(text) << ", " << shown(search) << ", " << start);
        const string_t s = this->make(search);
        EXPECT_EQ(this->make(text).find(static_cast<const TypeParam*>(s), start), want);
        if (s.length() == 1) {
            EXPECT_EQ(this->make(text).find(s.inq_char(0), start), want);
        }
    }
    EXPECT_EQ(this->make("a.b.c").find_last(TypeParam('.')), 3);
    EXPECT_EQ(this->make("").find_last(TypeParam('.')), -1);
    EXPECT_EQ(string_t().find_last(TypeParam('.')), -1);
}

TYPED_TEST(twins_test, single_units) {
    using string_t = string_of<TypeParam>;
    const string_t s = this->make("ab");
    EXPECT_EQ(s.inq_char(1), TypeParam('b'));
    for (const int outside : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(s.inq_char(outside), 0) << outside;
        EXPECT_EQ(string_t().inq_char(outside), 0) << outside;
    }
    EXPECT_EQ(s.inq_length(), 2);
    EXPECT_EQ(string_t().inq_length(), 0);
}

TYPED_TEST(twins_test, concatenation) {
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<const char*, const char*, const char*>;
    const row_t rows[] = {
        {nullptr, nullptr, "null"}, {nullptr, "", "''"}, {"", nullptr, "''"},   {"", "", "''"},
        {nullptr, "b", "'b'"},      {"", "bc", "'bc'"},  {"a", nullptr, "'a'"}, {"a", "", "'a'"},
        {"ab", "cde", "'abcde'"}};
    for (const auto& [first, second, want] : rows) {
        SCOPED_TRACE(shown(first) + " + " + shown(second));
        const string_t a = this->make(first);
        const string_t b = this->make(second);
        const TypeParam* const text = b;
        EXPECT_EQ(shown(a + b), want);
        EXPECT_EQ(shown(a + text), want);
        EXPECT_EQ(shown(static_cast<const TypeParam*>(a) + b), want);
        string_t by_string = a;
        string_t by_text = a;
        EXPECT_EQ(shown((by_string += b) += this->text(nullptr)), want);
        EXPECT_EQ(shown((by_text += text) += string_t()), want);
    }
    string_t s = this->make("a") + TypeParam('b') + TypeParam(0);
    s += TypeParam('c');
    s += TypeParam(0);
    EXPECT_EQ(shown(s), "'abc'");
    EXPECT_EQ(shown(string_t() += TypeParam(0)), "null");
}

TYPED_TEST(twins_test, counted_appending_never_leaves_null) {
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<const char*, const char*, int, const char*>;
    const row_t rows[] = {{"a", "xyz", 2, "'axy'"},    {"a", "xyz", 5, "'axyz'"}, {"a", "xyz", -1, "'axyz'"},
                          {"a", "xyz", 0, "'a'"},      {"a", nullptr, 2, "'a'"},  {nullptr, "xyz", 0, "''"},
                          {nullptr, nullptr, 0, "''"}, {nullptr, "xyz", 1, "'x'"}};
    for (const auto& [old, text, count, want] : rows) {
        string_t s = this->make(old);
        s.append(this->make(text), count);
        EXPECT_EQ(shown(s), want) << shown(text) << ", " << count;
    }
}

TYPED_TEST(twins_test, replacement) {
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<const char*, const char*, const char*, const char*>;
    const row_t rows[] = {{"C:/a/b", "/", "\\", "'C:\\a\\b'"}, {"aaaa", "aa", "b", "'bb'"},
                          {"aaa", "aa", "b", "'ba'"},          {"\r\r", "\r", "", "null"},
                          {"\r\r", "\r", nullptr, "null"},     {"ab", "b", "bb", "'abb'"},
                          {"abcabc", "bc", "", "'aa'"},        {"abc", "x", "yy", "'abc'"},
                          {"abc", "abcd", "y", "'abc'"},       {"", "x", "yy", "null"},
                          {nullptr, "x", "yy", "null"},        {"xax", "x", "123", "'123a123'"}};
    for (const auto& [text, search, replacement, want] : rows) {
        string_t s = this->make(text);
        s.replace(this->make(search), this->make(replacement));
        EXPECT_EQ(shown(s), want) << shown(text) << ", " << search;
    }
}

TYPED_TEST(twins_test, an_empty_search_is_reported_and_changes_nothing) {
    using string_t = string_of<TypeParam>;
    for (const char* const text : {"abc", "", static_cast<const char*>(nullptr)}) {
        recording_reporter reporter;
        string_t s = this->make(text);
        s.replace(string_t(), this->make("x"));
        EXPECT_EQ(shown(s), shown(text));
        const std::string file = std::is_same_v<TypeParam, char> ? "ZString" : "ZUString";
        EXPECT_EQ(reporter.take_without_lines(), "assertion " + file + ": search_len > 0;");
    }
}

TYPED_TEST(twins_test, changes_allocate_the_exact_size_once_or_change_nothing) {
    using string_t = string_of<TypeParam>;
    // Each changes 'abc' by 'b' or by a piece of itself.
    using row_t = std::pair<void (*)(string_t & s, const TypeParam* own, const string_t& b), std::string>;
    const row_t rows[] = {
        {[](string_t& s, const TypeParam*, const string_t& b) { s += b; }, "'abcb'"},
        {[](string_t& s, const TypeParam*, const string_t&) { s += s; }, "'abcabc'"},
        {[](string_t& s, const TypeParam* own, const string_t&) { s += own + 1; }, "'abcbc'"},
        {[](string_t& s, const TypeParam* own, const string_t&) { s += own + 3; }, "'abc'"},
        {[](string_t& s, const TypeParam*, const string_t&) { s += TypeParam('!'); }, "'abc!'"},
        {[](string_t& s, const TypeParam* own, const string_t&) { s.append(own + 1, 1); }, "'abcb'"},
        {[](string_t& s, const TypeParam*, const string_t&) { s.append(nullptr, 1); }, "'abc'"},
        {[](string_t& s, const TypeParam*, const string_t& b) { s.replace(s, b); }, "'b'"},
        {[](string_t& s, const TypeParam*, const string_t& b) { s.replace(b, s); }, "'aabcc'"},
        {[](string_t& s, const TypeParam*, const string_t&) { s.replace(s, s); }, "'abc'"},
    };
    const string_t b = this->make("b");
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.second);
        string_t s = this->make("abc");
        {
            const allocation_meter::section section(0);
            row.first(s, s, b);
            EXPECT_EQ(section.inq_asked(), 1);
            EXPECT_EQ(section.inq_bytes(), (row.second.size() - 1) * sizeof(TypeParam)); // quotes off, 0 on
        }
        EXPECT_EQ(shown(s), row.second);
        s = this->make("abc");
        EXPECT_TRUE(runs_out_of_memory(1, [&] { row.first(s, s, b); }));
        EXPECT_EQ(shown(s), "'abc'");
    }
}

TYPED_TEST(twins_test, running_out_of_memory_leaks_nothing_and_changes_no_operand) {
    using string_t = string_of<TypeParam>;
    using row_t = string_t (*)(const string_t& s, const TypeParam* text);
    const row_t rows[] = {
        [](const string_t& s, const TypeParam*) { return s + s; },
        [](const string_t& s, const TypeParam* text) { return s + text; },
        [](const string_t& s, const TypeParam* text) { return text + s; },
        [](const string_t& s, const TypeParam*) { return s + TypeParam('!'); },
        [](const string_t& s, const TypeParam*) { return s.left(2); },
        [](const string_t& s, const TypeParam*) { return s.right(2); },
        [](const string_t& s, const TypeParam*) { return s.right(9); },
        [](const string_t& s, const TypeParam*) { return s.mid(1, 2); },
        [](const string_t& s, const TypeParam*) { return s.sub_string(1, 2); },
        [](const string_t& s, const TypeParam*) { return string_t(s, 2); },
        [](const string_t&, const TypeParam* text) { return string_t(text, 1, 2); },
        [](const string_t& s, const TypeParam*) {
            string_t copy(s);
            copy.strip_cr();
            return copy;
        },
        [](const string_t& s, const TypeParam*) {
            string_t copy(s);
            copy.lf_to_crlf();
            return copy;
        },
    };
    const string_t s = this->make("a\r\nb");
    const TypeParam* const text = this->text("text");
    for (const row_t& row : rows) {
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            const allocation_meter::section section(n);
            try {
                EXPECT_GT(row(s, text).length(), 0);
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
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<const char*, void (string_t::*)(), const char*>;
    constexpr auto trim = static_cast<void (string_t::*)()>(&string_t::trim);
    const row_t rows[] = {{"  a b  ", trim, "'a b'"},
                          {" \t\n\v\f\r ", trim, "null"},
                          {"ab", trim, "'ab'"},
                          {"a ", trim, "'a'"},
                          {" a", trim, "'a'"},
                          {"", trim, "null"},
                          {nullptr, trim, "null"},
                          {"aZ{1", &string_t::to_upper, "'AZ{1'"},
                          {"aZ[1", &string_t::to_lower, "'az[1'"},
                          {nullptr, &string_t::to_upper, "null"},
                          {"", &string_t::to_lower, "''"},
                          {"a\r\nb\r", &string_t::strip_cr, "'a<0A>b'"},
                          {"\r", &string_t::strip_cr, "null"},
                          {"a\nb", &string_t::lf_to_crlf, "'a<0D><0A>b'"},
                          {"a\r\nb", &string_t::lf_to_crlf, "'a<0D><0D><0A>b'"},
                          {nullptr, &string_t::lf_to_crlf, "null"}};
    for (const auto& [text, change, want] : rows) {
        string_t s = this->make(text);
        (s.*change)();
        EXPECT_EQ(shown(s), want) << shown(text);
    }
}

TYPED_TEST(twins_test, parts_of_a_text) {
    using string_t = string_of<TypeParam>;
    using row_t = std::tuple<string_t, const char*>;
    const string_t abc = this->make("abc");
    const string_t null;
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

TYPED_TEST(twins_test, numbers) {
    std::int64_t wide_value = 0;
    int value = 0;
    unsigned int unsigned_value = 0;
    int base = 0;
    EXPECT_TRUE(this->make(" -0x1F").to_int64(wide_value, &base) && wide_value == -31 && base == 16);
    EXPECT_TRUE(this->make("0b11").to_int(value, nullptr) && value == 3);
    EXPECT_TRUE(this->make("4294967295").to_uint(unsigned_value, nullptr) && unsigned_value == 4294967295U);

    using row_t = std::tuple<const char*, bool, double>;
    const row_t rows[] = {{" 3.5e2xyz", true, 350}, {"-.25", true, -0.25}, {"1.5.5", true, 1.5},
                          {"abc", false, 4711},     {"", false, 4711},     {" ", false, 4711},
                          {nullptr, false, 4711}};
    for (const auto& [text, is_number, want] : rows) {
        double number = 4711;
        EXPECT_EQ(this->make(text).to_double(number), is_number) << shown(text);
        EXPECT_EQ(number, want) << shown(text);
    }
}

TYPED_TEST(twins_test, integers) {
    using row_t = std::tuple<const char*, std::int64_t, int>; // with base 0 where there is no number
    const row_t rows[] = {{"0", 0, 10},
                          {"  42", 42, 10},
                          {"\t\n-7", -7, 10},
                          {"007", 7, 10},
                          {"12abc", 12, 10},
                          {"-0x1F", -31, 16},
                          {"0XaBcDeF", 0xABCDEF, 16},
                          {"0x1G", 1, 16},
                          {"0b101", 5, 2},
                          {"-0B12", -1, 2},
                          {"0b", 0, 0},
                          {"0xx1", 0, 0},
                          {"0b2", 0, 0},
                          {"0x", 0, 0},
                          {"- 5", 0, 0},
                          {"+5", 0, 0},
                          {"--5", 0, 0},
                          {"-", 0, 0},
                          {"   ", 0, 0},
                          {"", 0, 0},
                          {nullptr, 0, 0},
                          {"x12", 0, 0},
                          {"9223372036854775807", INT64_MAX, 10},
                          {"-9223372036854775808", INT64_MIN, 10},
                          {"9223372036854775808", INT64_MIN, 10},
                          {"0xFFFFFFFFFFFFFFFFF", -1, 16}};
    for (const auto& [text, want, base] : rows) {
        std::int64_t value = 4711;
        int read_base = 0;
        EXPECT_EQ(store_integer(this->text(text), value, &read_base), base != 0) << shown(text);
        EXPECT_EQ(value, base != 0 ? want : 4711) << shown(text);
        EXPECT_EQ(read_base, base) << shown(text);
    }
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
        EXPECT_EQ(store_integer(this->text(text), value, &base), fits_int) << text;
        EXPECT_EQ(value != 4711, fits_int) << text;
        EXPECT_EQ(base, 10) << text;
        EXPECT_EQ(store_integer(this->text(text), unsigned_value, static_cast<int*>(nullptr)), fits_uint)
            << text;
        EXPECT_EQ(unsigned_value != 4711, fits_uint) << text;
    }
}

} // namespace
