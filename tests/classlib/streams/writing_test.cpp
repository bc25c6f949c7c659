#include "classlib/streams/ZData.h"
#include "classlib/streams/ZPrintable.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/byte_sink.h"
#include "tests/support/recording_reporter.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace std::string_literals;

class point_t final : public ZPrintable {
public:
    void print_to(ZWStream& out) const override { out << 3 << '/' << 4; }
};

ZWStream& width5(ZWStream& out) {
    out.set_width(5);
    return out;
}

ZWStream& stars(ZWStream& out) {
    out.set_fill('*');
    return out;
}

TEST(writing, text_follows_the_formatting_state) {
    static constexpr const char* null = nullptr;
    constexpr const char* bad_base = "assertion ZWStream: base >= 2 && base <= 36;";
    constexpr const char* too_long = "assertion ZWStream: c >= str;";
    constexpr const char* too_large = "warning ZWStream: PackedInt out of range;";
    struct row_t {
        void (*write)(ZWStream& out);
        std::string want;
        const char* reports = "";
    };
    const row_t rows[] = {
        {[](auto& out) { out << 255 << ' ' << -7 << ' ' << 3.5 << '\0' << 0U; }, "255 -7 3.500000\0"s + "0"},
        {[](auto& out) { out << INT64_MIN << UINT64_MAX; }, "-922337203685477580818446744073709551615"},
        {[](auto& out) { out << base16 << INT_MIN << ',' << UINT_MAX; }, "FFFFFFFF80000000,FFFFFFFF"},
        {[](auto& out) { out.set_base(36), out << UINT64_MAX << out.digit_char(10); }, "3W5E11264SGSFA"},
        {[](auto& out) { out << width5 << left_justify << "ab" << width5 << 'c' << '|'; }, "ab   c    |"},
        {[](auto& out) { out << width5 << "abcdef" << 'g' << width5 << "abcde" << 'g'; }, "abcdefgabcdeg"},
        {[](auto& out) { out << width5 << "" << null << ZString() << 'x'; }, "    x"},
        {[](auto& out) { out.set_width(10), out << 3.25 << ';' << width5 << -42; }, "  3.250000;    -42"},
        {[](auto& out) { out << stars << width5 << 'x' << width5 << ZString("ab"); }, "****x***ab"},
        {[](auto& out) { out << width5 << ZUString("\xE9") << UTF16("\u20AC"); }, "   \xC3\xA9\xE2\x82\xAC"},
        {[](auto& out) { out << width5 << wide_new_line << 'x'; }, "\r\0\n\0    x"s},
        {[](auto& out) { out << width5 << point_t() << scientific << fixed_point << 1.0; },
         "    3/41.000000"},
        {[](auto& out) { out << base16, out.set_base(1), out << 255; }, "FF", bad_base},
        {[](auto& out) { out.set_width(-1), out << 'x'; }, "x", "assertion ZWStream: width >= 0;"},
        {[](auto& out) { out.set_base(2), out << 5 << -1; }, "101" + std::string(64, '1'), too_long},
        {[](auto& out) { out.write_packed_int(0xC0000005); }, "\xC0\0\0\5"s, too_large},
    };
    for (const row_t& row : rows) {
        recording_reporter reporter;
        byte_sink out;
        row.write(out);
        EXPECT_EQ(out.inq_bytes(), row.want);
        EXPECT_EQ(reporter.take(), row.reports);
    }
}

TEST(writing, a_text_item_with_its_padding_is_one_write) {
    byte_sink out;
    out << width5 << left_justify << "ab" << -42 << 1.5 << ZUString("\xE9");
    EXPECT_EQ(out.inq_writes(), (std::vector<std::string>{"ab   ", "-", "42", "1.500000", "\xC3\xA9"}));
}

TEST(writing, the_formatting_state_stays_with_its_string) {
    ZString s("text");
    s << base16;
    s = "x";
    ZString assigned;
    assigned = s;
    for (ZString other : {s, assigned, s + "", s.left(1)})
        EXPECT_STREQ((other << 10, other), "x10");
    EXPECT_STREQ((s << 10, s), "xA");
    EXPECT_EQ(s.seek(5), -1);
    s.clear();
    EXPECT_STREQ((s << 10, s), "10");
    EXPECT_EQ(s.inq_error(), 8);
    for (const auto& [base, prefixed] : {std::pair(2, "0b7"), {8, "7"}, {16, "0x7"}, {36, "7"}}) {
        ZString digits("7");
        s.set_base(base);
        s.add_base_prefix(digits);
        EXPECT_STREQ(digits, prefixed);
    }
}

TEST(writing, floating_point_numbers_are_correctly_rounded) {
    using row_t = std::tuple<double, int, std::string>;
    const row_t rows[] = {
        {1234.5, 6, "1234.500000 1.23450e003"},
        {2.5, 0, "2. 2.e000"},
        {0.125, 2, "0.12 1.2e-001"},
        {0.1, 20, "0.10000000000000000555 1.0000000000000000555e-001"},
        {5e-324, 4, "0.0000 4.941e-324"},
        {-0.0, 2, "-0.00 -0.0e000"},
        {-HUGE_VAL, 6, "-inf -inf"},
        {std::copysign(NAN, -1.0), 2, "nan nan"},
    };
    for (const auto& [value, precision, want] : rows) {
        byte_sink out;
        out.set_precision(precision);
        out << value << ' ' << scientific << value;
        EXPECT_EQ(out.inq_bytes(), want);
    }
}

TEST(writing, floating_point_numbers_that_may_not_fit_are_reported) {
    // The largest precision, which with the digits before the point, or the zeros behind it, and 16 makes
    // 512.
    using row_t = std::tuple<double, wsflag_t, int>;
    const row_t rows[] = {{1, wsflag_t{}, 495}, {DBL_MAX, wsflag_scientific, 187}, {-10, wsflag_t{}, 494},
                          {0, wsflag_t{}, 495}, {5e-324, wsflag_scientific, 173},  {0.5, wsflag_t{}, 496}};
    for (const auto& [value, form, largest_precision] : rows) {
        recording_reporter reporter;
        byte_sink out;
        out.set_flag(form);
        for (const int precision : {largest_precision + 1, INT_MAX, largest_precision}) {
            EXPECT_EQ(out.inq_bytes(), "") << value << ", " << precision;
            out.set_precision(precision);
            out << value;
        }
        EXPECT_NE(out.inq_bytes(), "") << value;
        EXPECT_EQ(reporter.take(), "warning ZWStream: Buffer too small;warning ZWStream: Buffer too small;");
    }
}

TEST(writing, binary_forms_leave_the_formatting_state_alone) {
    using row_t = std::tuple<bool (*)(ZWStream & out), std::string>;
    const row_t rows[] = {
        {[](auto& out) { return out.write_uint8(200); }, "\xC8"},
        {[](auto& out) { return out.write_int16(-2); }, "\xFF\xFE"},
        {[](auto& out) { return out.write_int32(-2L); }, "\xFF\xFF\xFF\xFE"},
        {[](auto& out) { return out.write_uint32(0x9ABCDEF0UL); }, "\x9A\xBC\xDE\xF0"},
        {[](auto& out) { return out.write_float(-0.1F); }, "\xBD\xCC\xCC\xCD"},
        {[](auto& out) { return out.write_packed_int(127); }, "\x7F"},
        {[](auto& out) { return out.write_packed_int(16384); }, "\xC0\0\x40\0"s},
        {[](auto& out) { return out.write_packed_int(1073741823); }, "\xFF\xFF\xFF\xFF"},
        {[](auto& out) { return out.write("a\0b", 3); }, "a\0b"s},
        {[](auto& out) { return ZString("abc").write_to(out); }, "abc\0"s},
        {[](auto& out) { return ZData("a\0b", 3).write(out); }, "\0\0\0\3a\0b"s},
    };
    for (const auto& [write, want] : rows) {
        byte_sink out;
        out << base16 << width5 << stars << left_justify;
        EXPECT_TRUE(write(out));
        EXPECT_EQ((out << 'x', out).inq_bytes(), want + "x****");
        out.refuse();
        EXPECT_FALSE(write(out));
    }
}

} // namespace
