#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "classlib/strings/integer_text.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <cstdint>
#include <deque>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

// What byte text and wide text have in common: each test runs for both units.
namespace {

template <typename Unit>
using string_of = std::conditional_t<std::is_same_v<Unit, char>, ZString, ZUString>;

template <typename Unit>
class twins_test : public testing::Test {
protected:
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
