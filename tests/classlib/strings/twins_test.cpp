#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "classlib/strings/integer_text.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <deque>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
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

    struct row_t {
        const char* text;
        int count;
        const char* counted;
        const char* whole;
    };
    constexpr row_t rows[] = {
        {nullptr, -1, "null", "null"}, {nullptr, 0, "null", "null"},   {nullptr, 3, "null", "null"},
        {"", -1, "''", "''"},          {"", 0, "null", "''"},          {"", 3, "''", "''"},
        {"ab", -1, "'ab'", "'ab'"},    {"ab", 0, "null", "'ab'"},      {"ab", 1, "'a'", "'ab'"},
        {"ab", 10, "'ab'", "'ab'"},    {"ab", INT_MAX, "'ab'", "'ab'"}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(testing::Message() << (row.text != nullptr ? row.text : "null") << ", " << row.count);
        const TypeParam* const text = this->text(row.text);
        const string_t made(text);
        EXPECT_EQ(shown(made), row.whole);
        EXPECT_EQ(shown(string_t(text, row.count)), row.counted);
        EXPECT_EQ(shown(string_t(made, row.count)), row.counted);
        EXPECT_EQ(shown(string_t(made)), row.whole);

        string_t assigned(this->text("before"));
        assigned = text;
        EXPECT_EQ(shown(assigned), row.whole);
        assigned = this->text("before");
        assigned = made;
        EXPECT_EQ(shown(assigned), row.whole);
        assigned.clear();
        EXPECT_EQ(shown(assigned), "null");
    }
}

TYPED_TEST(twins_test, a_counted_text_needs_no_terminator) {
    const std::basic_string<TypeParam> abc{TypeParam('a'), TypeParam('b'), TypeParam('c')};
    const auto units = std::make_unique<TypeParam[]>(3);
    std::copy(abc.begin(), abc.end(), units.get());
    EXPECT_EQ(shown(string_of<TypeParam>(units.get(), 3)), "'abc'");
}

TYPED_TEST(twins_test, a_range_of_a_text_is_clamped) {
    using string_t = string_of<TypeParam>;
    struct row_t {
        const char* text;
        int start;
        int count;
        const char* want;
    };
    constexpr row_t rows[] = {
        {"filename", 4, 4, "'name'"},
        {"filename", -4, -1, "'name'"},
        {"filename", -4, 2, "'na'"},
        {"filename", -10, 4, "'fi'"},
        {"filename", 2, 100, "'lename'"},
        {"filename", 8, 1, "null"},
        {"filename", 9, -1, "null"},
        {"filename", 9, 1, "null"},
        {"filename", 3, 0, "null"},
        {"filename", 0, -1, "'filename'"},
        {"filename", -9, 1, "null"},
        {"filename", -10, 1, "'filename'"}, // what is lacking to 0 makes the count negative: up to the end
        {"filename", 1, INT_MAX, "'ilename'"},
        {"filename", INT_MAX, INT_MAX, "null"},
        {"filename", INT_MIN, INT_MAX, "'filenam'"},
        {"filename", INT_MIN, INT_MIN, "'filename'"},
        {"", 0, -1, "null"},
        {nullptr, 0, 3, "null"},
        {nullptr, -3, -1, "null"},
    };
    for (const row_t& row : rows) {
        SCOPED_TRACE(testing::Message() << row.start << ", " << row.count);
        const TypeParam* const text = this->text(row.text);
        EXPECT_EQ(shown(string_t(text, row.start, row.count)), row.want);
        EXPECT_EQ(shown(string_t(string_t(text), row.start, row.count)), row.want);
    }
}

TYPED_TEST(twins_test, a_string_may_be_assigned_a_piece_of_itself) {
    using string_t = string_of<TypeParam>;
    string_t s(this->text("abcdef"));
    s = static_cast<const TypeParam*>(s) + 2;
    EXPECT_EQ(shown(s), "'cdef'");
    s = static_cast<const TypeParam*>(s);
    EXPECT_EQ(shown(s), "'cdef'");
    const string_t& same = s;
    s = same;
    EXPECT_EQ(shown(s), "'cdef'");
    s = static_cast<const TypeParam*>(s) + 4;
    EXPECT_EQ(shown(s), "''");
}

TYPED_TEST(twins_test, copies_share_nothing) {
    using string_t = string_of<TypeParam>;
    string_t original(this->text("abc"));
    const string_t copy(original);
    string_t assigned;
    assigned = original;
    original = this->text("xyz");
    EXPECT_EQ(shown(copy), "'abc'");
    EXPECT_EQ(shown(assigned), "'abc'");
}

TYPED_TEST(twins_test, filling_a_string_allocates_its_exact_size_once) {
    using string_t = string_of<TypeParam>;
    struct row_t {
        const char* what;
        void (*fill)(string_t& s, const string_t& other, const TypeParam* text);
        const char* after_failure;
    };
    const row_t rows[] = {
        {"assign a string", [](auto& s, auto& other, auto) { s = other; }, "null"},
        {"assign a text", [](auto& s, auto&, auto text) { s = text; }, "null"},
        {"assign its own text", [](auto& s, auto&, auto) { s = static_cast<const TypeParam*>(s) + 2; },
         "null"},
        {"copy", [](auto&, auto& other, auto) { static_cast<void>(string_t(other)); }, "'abcdef'"},
        {"take a count", [](auto&, auto&, auto text) { static_cast<void>(string_t(text, 4)); }, "'abcdef'"},
        {"repeat", [](auto&, auto&, auto) { static_cast<void>(string_t(4, TypeParam('x'))); }, "'abcdef'"},
    };
    const string_t other(this->text("1234"));
    const TypeParam* const text = this->text("1234");
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.what);
        string_t s(this->text("abcdef"));
        {
            const allocation_meter::section section(0);
            row.fill(s, other, text);
            EXPECT_EQ(section.inq_asked(), 1);
            EXPECT_EQ(section.inq_bytes(), 5 * sizeof(TypeParam));
        }
        s = this->text("abcdef");
        EXPECT_TRUE(runs_out_of_memory(1, [&] { row.fill(s, other, text); }));
        EXPECT_EQ(shown(s), row.after_failure);
    }
}

TYPED_TEST(twins_test, integers) {
    struct row_t {
        const char* text;
        std::int64_t want;
        int base; // 0 where there is no number
    };
    constexpr row_t rows[] = {
        {"0", 0, 10},
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
        {"18446744073709551617", 1, 10},
        {"0xFFFFFFFFFFFFFFFFF", -1, 16},
    };
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.text != nullptr ? row.text : "null");
        std::int64_t value = 4711;
        int base = 0;
        EXPECT_EQ(store_integer(this->text(row.text), value, &base), row.base != 0);
        EXPECT_EQ(value, row.base != 0 ? row.want : 4711);
        EXPECT_EQ(base, row.base);
    }
}

TYPED_TEST(twins_test, integers_that_do_not_fit_are_refused) {
    struct row_t {
        const char* text;
        bool fits_int;
        bool fits_uint;
    };
    constexpr row_t rows[] = {{"2147483647", true, true},   {"2147483648", false, true},
                              {"-2147483648", true, false}, {"-2147483649", false, false},
                              {"4294967295", false, true},  {"4294967296", false, false},
                              {"-1", true, false},          {"18446744073709551617", true, true}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.text);
        int signed_value = 4711;
        unsigned int unsigned_value = 4711;
        int signed_base = 0;
        int unsigned_base = 0;
        EXPECT_EQ(store_integer(this->text(row.text), signed_value, &signed_base), row.fits_int);
        EXPECT_EQ(store_integer(this->text(row.text), unsigned_value, &unsigned_base), row.fits_uint);
        EXPECT_EQ(signed_value != 4711, row.fits_int);
        EXPECT_EQ(unsigned_value != 4711, row.fits_uint);
        EXPECT_EQ(signed_base, 10);
        EXPECT_EQ(unsigned_base, 10);
    }
}

} // namespace
