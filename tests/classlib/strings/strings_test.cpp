#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"

#include <climits>
#include <cstdint>
#include <memory>
#include <tuple>

namespace {

// What byte text and wide text have in common: each test of this suite runs for both.
template <typename String>
class twins_test : public testing::Test {
public:
    using unit_t = decltype(String().inq_char(0));

    // Of the null form for a null text.
    static String make(const char* ascii) { return ascii != nullptr ? String(ascii) : String(); }
    static const unit_t* text_of(const String& s) { return s; }
};

using twins_t = testing::Types<ZString, ZUString>;
TYPED_TEST_SUITE(twins_test, twins_t);

TYPED_TEST(twins_test, construction_and_assignment_choose_the_form_of_an_empty_text) {
    const auto unterminated = std::make_unique<typename TestFixture::unit_t>('a');
    EXPECT_EQ(shown(TypeParam(unterminated.get(), 1)), "'a'");
    EXPECT_EQ(shown(TypeParam(0, *unterminated)), "''");
    using row_t = std::tuple<const char*, int, const char*, const char*>;
    const row_t rows[] = {{nullptr, 3, "null", "null"}, {"", -1, "''", "''"},
                          {"ab", 0, "null", "'ab'"},    {"ab", 1, "'a'", "'ab'"},
                          {"ab", -1, "'ab'", "'ab'"},   {"ab", INT_MAX, "'ab'", "'ab'"}};
    for (const auto& [ascii, count, counted, whole] : rows) {
        const TypeParam source = this->make(ascii);
        EXPECT_EQ(shown(TypeParam(this->text_of(source), count)), counted);
        EXPECT_EQ(shown(TypeParam(source, count)), counted);
        TypeParam assigned("before");
        EXPECT_EQ(shown(assigned = this->text_of(source)), whole);
        EXPECT_EQ(shown(assigned = source), whole);
        assigned.clear();
        EXPECT_EQ(shown(assigned), "null");
    }
}

TYPED_TEST(twins_test, comparison) {
    using row_t = std::tuple<const char*, const char*, int, int>;
    for (const auto& [first, second, order, order_without_case] :
         {row_t{nullptr, "", 0, 0}, {"a", "abc", -1, -1}, {"abc", "ABC", 1, 0}, {"_", "A", 1, -1}}) {
        const TypeParam a = this->make(first);
        const TypeParam b = this->make(second);
        EXPECT_EQ(a.compare(b), order);
        EXPECT_EQ(a.compare_no_case(b), order_without_case);
        EXPECT_EQ((a == b) + (a == this->text_of(b)) + a.is_equal(b), order == 0 ? 3 : 0);
        EXPECT_EQ(a.is_equal_no_case(b), order_without_case == 0);
        EXPECT_EQ((a > b) - (a < b), order);
    }
}

TYPED_TEST(twins_test, search) {
    using row_t = std::tuple<const char*, const char*, int, int>;
    const row_t rows[] = {{"a.b.c", ".", -1, 1},   {"a.b.c", ".", 2, 3}, {"a.b.c", ".", 9, -1},
                          {"abcbc", "bcd", 3, -1}, {"abcbc", "", 5, -1}, {"abc", nullptr, 2, 2}};
    for (const auto& [text, search, start, want] : rows) {
        const TypeParam s = this->make(search);
        EXPECT_EQ(TypeParam(text).find(this->text_of(s), start), want) << shown(s) << start;
        EXPECT_TRUE(s.length() != 1 || TypeParam(text).find(s.inq_char(0), start) == want) << start;
    }
    EXPECT_EQ(TypeParam("a.b.c").find_last('.'), 3);
    for (const int outside : {-1, 2, 3, INT_MIN, INT_MAX})
        EXPECT_EQ(TypeParam("ab").inq_char(outside) + TypeParam().inq_char(outside), 0) << outside;
}

TYPED_TEST(twins_test, changes_and_parts) {
    using S = TypeParam;
    using row_t = std::tuple<const char*, void (*)(S & s), const char*>;
    const row_t rows[] = {
        {"  a b  ", [](S& s) { s.trim(); }, "'a b'"},
        {"\t\n\v\f\r ", [](S& s) { s.trim(); }, "null"},
        {"`aZ{@[1", [](S& s) { s.to_upper(); }, "'`AZ{@[1'"},
        {"`aZ{@[1", [](S& s) { s.to_lower(); }, "'`az{@[1'"},
        {"a\r\nb\r", [](S& s) { s.strip_cr(); }, "'a<0A>b'"},
        {"\r\n", [](S& s) { s.lf_to_crlf(); }, "'<0D><0D><0A>'"},
        {"aaa", [](S& s) { s.replace("aa", "b"); }, "'ba'"},
        {"\r\r", [](S& s) { s.replace("\r", S()); }, "null"},
        {nullptr, [](S& s) { s = (s + S()) += S(); }, "null"},
        {nullptr, [](S& s) { s = s + S(""); }, "''"},
        {"a", [](S& s) { s += s.inq_char(1); }, "'a'"}, // a zero
        {"a", [](S& s) { s.append(S("xyz"), 2); }, "'axy'"},
        {nullptr, [](S& s) { s.append(S("xyz"), 0); }, "''"},
        {nullptr, [](S& s) { s = s.left(2); }, "''"},
        {"abc", [](S& s) { s = s.right(2); }, "'bc'"},
        {"abc", [](S& s) { s = s.mid(INT_MAX, INT_MAX); }, "'abc'"},
        {"filename", [](S& s) { s = S(s, -4, -1); }, "'name'"},
        {"filename", [](S& s) { s = s.sub_string(-4, 2); }, "'na'"},
        {"filename", [](S& s) { s = S(s, 1, INT_MAX); }, "'ilename'"},
        {"filename", [](S& s) { s = s.sub_string(8, 1); }, "null"},
        {"filename", [](S& s) { s = S(s, -10, 4); }, "'fi'"}, // from 0 on
        {"name", [](S& s) { s = S(s, -9, 1); }, "'name'"},    // what is lacking makes the count negative
    };
    for (const auto& [text, change, want] : rows) {
        S s = this->make(text);
        change(s);
        EXPECT_EQ(shown(s), want) << "row " << &text - &std::get<0>(rows[0]);
    }
    recording_reporter reporter;
    S s("abc");
    s.replace(S(), "x");
    EXPECT_EQ(shown(s), "'abc'");
    EXPECT_TRUE(reporter.take().ends_with("String: search_len > 0;"));
}

TYPED_TEST(twins_test, changes_allocate_once_or_fail_as_promised) {
    using S = TypeParam;
    // Each changes 'abc' by 'b' or by a piece of itself; then what is left without memory.
    using unit = typename TestFixture::unit_t;
    using row_t = std::tuple<void (*)(S & s, const unit* own, const S& b), const char*, const char*>;
    const row_t rows[] = {
        {[](S& s, const unit*, const S& b) { s = b; }, "'b'", "null"},
        {[](S& s, const unit* own, const S&) { s = own + 2; }, "'c'", "null"},
        {[](S& s, const unit*, const S&) { s += s; }, "'abcabc'", "'abc'"},
        {[](S& s, const unit*, const S&) { s += unit('!'); }, "'abc!'", "'abc'"},
        {[](S& s, const unit* own, const S&) { s.append(own + 1, 1); }, "'abcb'", "'abc'"},
        {[](S& s, const unit*, const S& b) { s.replace(s, b); }, "'b'", "'abc'"},
        {[](S& s, const unit*, const S& b) { s.replace(b, s); }, "'aabcc'", "'abc'"},
        {[](S& s, const unit*, const S& b) { s = s + b; }, "'abcb'", "'abc'"},
        {[](S& s, const unit*, const S&) { s = s.mid(1, 2); }, "'bc'", "'abc'"},
    };
    const S b("b");
    for (const auto& [change, want, left] : rows) {
        S s("abc");
        EXPECT_TRUE(runs_out_of_memory(1, [&, change = change] { change(s, s, b); }));
        EXPECT_EQ(shown(s), left) << want;
        s = S("abc");
        const allocation_meter::section section(2);
        change(s, s, b);
        EXPECT_EQ(section.inq_asked(), 1) << want;
        EXPECT_EQ(shown(s), want);
    }
    for (const int n : {1, 2})
        EXPECT_TRUE(runs_out_of_memory(n, [&] { static_cast<void>(this->text_of(b) + b); })) << n;
}

TYPED_TEST(twins_test, numbers) {
    constexpr std::int64_t old = 4711;
    using row_t = std::tuple<const char*, std::int64_t, int>;
    const row_t rows[] = {{"2147483647", 2147483647, 10},         {"007", 7, 10},      {"0b2", old, 0},
                          {"2147483648", 2147483648, 10},         {"\t\n -7", -7, 10}, {"- 5", old, 0},
                          {"-2147483649", -2147483649, 10},       {"-0x1F", -31, 16},  {"+5", old, 0},
                          {"4294967296", 4294967296, 10},         {"0x1G", 1, 16},     {"0x", old, 0},
                          {"9223372036854775808", INT64_MIN, 10}, {"-0B12", -1, 2},    {nullptr, old, 0}};
    for (const auto& [text, want, want_base] : rows) {
        SCOPED_TRACE(shown(text));
        const TypeParam s = this->make(text);
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
    double fraction = old;
    EXPECT_FALSE(TypeParam("abc").to_double(fraction) || TypeParam().to_double(fraction));
    EXPECT_EQ(fraction, old);
    EXPECT_TRUE(TypeParam(" -3.5e2xyz").to_double(fraction));
    EXPECT_EQ(fraction, -350);
}

TEST(wide_strings, bytes_are_widened_and_units_are_not_their_low_bytes) {
    ZUString s(static_cast<const char*>(nullptr));
    EXPECT_EQ(shown(s), "''");
    EXPECT_EQ(shown(s << "\xFF" << ZUString("|") << UTF16("x") << 0 << INT_MIN), "'<FF>|x0-2147483648'");
    EXPECT_EQ(ZUString(UTF16("\u0141")).find(utf16_t(u'A'), 0), -1);
    EXPECT_EQ(ZUString(UTF16("z")).compare(UTF16("\u8001")), -1);
    int value = 0;
    EXPECT_FALSE(ZUString(UTF16("\u0131")).to_int(value, nullptr));
    s = UTF16("\u0120a\u00E9\u0131\u0120"); // only ASCII has a case
    s.trim();
    s.to_upper();
    EXPECT_EQ(shown(s), "'<120>A<E9><131><120>'");
    EXPECT_EQ(shown(ZMBString(ZUString())) + shown(ZMBString(ZUString(""))), "null''");
    EXPECT_EQ(shown(ZUString::from_utf8(nullptr)) + shown(ZUString::from_utf8("")), "null''");
    for (const int n : {1, 2}) {
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZMBString(UTF16("\u00E9"))); })) << n;
        EXPECT_TRUE(runs_out_of_memory(n, [] { static_cast<void>(ZUString::from_utf8("abc")); })) << n;
    }
}

TEST(byte_strings, bytes_are_stored_as_they_are_and_written_behind_the_first_zero) {
    ZString s(" \xA0z\xE9\x85 ");
    s.trim();
    s.to_upper();
    EXPECT_EQ(shown(s), "'<A0>Z<E9><85>'");
    EXPECT_EQ(ZString("z").compare("\xE9"), -1); // bytes are unsigned
    s.init_narrow(UTF16("a\u00E9\u20ACz\u0100"));
    EXPECT_EQ(shown(s), "'a<E9>?z?'");
    s.set_bytes("a\0b", 3);
    EXPECT_EQ(s.inq_size(), 2);
    s.set_bytes(static_cast<const char*>(s) + 2, 1);
    EXPECT_EQ(shown(s), "'b'");
    s.clear();
    EXPECT_TRUE(s.write_bytes("a\0b", 3) && s.write_bytes("cd\xE9", 3) &&
                s.write_bytes(static_cast<const char*>(s) + 1, 2));
    EXPECT_TRUE(runs_out_of_memory(1, [&] { s.write_bytes("?", 1); }));
    EXPECT_EQ(shown(s), "'acd<E9>cd'");
}

} // namespace
