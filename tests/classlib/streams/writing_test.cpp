#include "classlib/streams/ZData.h"
#include "classlib/streams/ZPrintable.h"
#include "classlib/streams/ZWStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/byte_sink.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/shown_text.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;

class point_t final : public ZPrintable {
public:
    void print_to(ZWStream& out) const override { out << 3 << '/' << 4; }
};

ZWStream& base2(ZWStream& out) {
    out.set_base(2);
    return out;
}

ZWStream& base36(ZWStream& out) {
    out.set_base(36);
    return out;
}

ZWStream& width5(ZWStream& out) {
    out.set_width(5);
    return out;
}

ZWStream& stars(ZWStream& out) {
    out.set_fill('*');
    return out;
}

TEST(text_output, follows_the_formatting_state) {
    struct row_t {
        void (*write)(ZWStream& out);
        std::string want;
    };
    const row_t rows[] = {
        {[](auto& out) { out << 255 << ' ' << -7 << ' ' << 3.5 << '\0' << 0U; }, "255 -7 3.500000\0"s + "0"},
        {[](auto& out) { out << INT64_MIN << ',' << UINT64_MAX << ',' << INT_MIN << ',' << UINT_MAX; },
         "-9223372036854775808,18446744073709551615,-2147483648,4294967295"},
        {[](auto& out) { out << base16 << 255 << ',' << -1 << ',' << UINT_MAX << ',' << INT_MIN; },
         "FF,FFFFFFFFFFFFFFFF,FFFFFFFF,FFFFFFFF80000000"},
        {[](auto& out) { out << base8 << 8 << ',' << -1 << base10 << 8; }, "10,17777777777777777777778"},
        {[](auto& out) { out << base2 << 5 << 0 << base36 << 35 << UINT64_MAX; }, "1010Z3W5E11264SGSF"},
        {[](auto& out) {
             out << width5 << "ab"
                 << "cd";
         },
         "   abcd"},
        {[](auto& out) { out << width5 << left_justify << "ab" << width5 << 'c' << '|'; }, "ab   c    |"},
        {[](auto& out) { out << left_justify << right_justify << width5 << 12U; }, "   12"},
        {[](auto& out) { out << width5 << "abcdef" << 'g' << width5 << "abcde" << 'g'; }, "abcdefgabcdeg"},
        {[](auto& out) { out << width5 << "" << static_cast<const char*>(nullptr) << ZString() << 'x'; },
         "    x"},
        {[](auto& out) { out << width5 << ZString("") << ZUString() << ZUString("") << 'x'; }, "    x"},
        {[](auto& out) { out.set_width(10), out << 3.25 << ';' << width5 << -42; }, "  3.250000;    -42"},
        {[](auto& out) { out << left_justify << width5 << -42; }, "-    42"},
        {[](auto& out) { out << width5 << base16 << -1; }, "FFFFFFFFFFFFFFFF"},
        {[](auto& out) { out << stars << width5 << 'x' << width5 << ZString("ab"); }, "****x***ab"},
        {[](auto& out) { out << width5 << ZUString("\xE9") << ZUString(UTF16("\u20AC")); },
         "   \xC3\xA9\xE2\x82\xAC"},
        {[](auto& out) { out << width5 << new_line << new_line; }, "    \n\n"},
        {[](auto& out) { out << width5 << wide_new_line << 'x'; }, "\r\0\n\0    x"s},
        {[](auto& out) { out << width5 << point_t() << scientific << 1.0 << fixed_point << 1.0; },
         "    3/41.00000e0001.000000"},
        {[](auto& out) { out.write_text("abc", 2), out.write_text("abc", 0), out.write_text("abc", -1); },
         "ab"},
    };
    for (const row_t& row : rows) {
        byte_sink out;
        row.write(out);
        EXPECT_EQ(out.inq_bytes(), row.want);
    }
}

TEST(text_output, an_item_with_its_padding_is_one_write) {
    byte_sink out;
    out << width5 << "ab" << width5 << left_justify << "ab" << -42 << 1.5 << ZUString("\xE9");
    EXPECT_EQ(out.inq_writes(),
              (std::vector<std::string>{"   ab", "ab   ", "-", "42", "1.500000", "\xC3\xA9"}));
    out.refuse();
    out << "nobody looks at the answer" << 1;
    EXPECT_EQ(out.inq_error(), 0);
}

// What a string appends under its formatting state.
std::string sample(ZString& s) {
    const auto length = static_cast<std::size_t>(s.length());
    s << 10 << 1.5;
    return plain(s).substr(length);
}

TEST(text_output, the_formatting_state_stays_with_its_string) {
    constexpr const char* by_default = "101.500000";
    constexpr const char* changed = "A**1.5e000";
    struct row_t {
        std::string (*act)(ZString& s); // s has a changed state
        const char* want;
    };
    constexpr row_t rows[] = {
        {[](ZString& s) { return sample(s); }, changed},
        {[](ZString& s) { return s = "x", sample(s); }, changed},
        {[](ZString& s) { return s = ZString("x"), sample(s); }, changed},
        {[](ZString& s) { return s.set_bytes("x", 1), sample(s); }, changed},
        {[](ZString& s) { return s += "x", s.replace("x", "y"), s.trim(), sample(s); }, changed},
        {[](ZString& s) { return s.clear(), sample(s); }, by_default},
        {[](ZString& s) { return s.reset_format(), sample(s); }, by_default},
        {[](ZString& s) {
             ZString copy(s);
             return sample(copy);
         },
         by_default},
        {[](ZString& s) {
             ZString moved(std::move(s));
             return sample(moved);
         },
         by_default},
        {[](ZString& s) {
             ZString target("t");
             target = s;
             return sample(target);
         },
         by_default},
        {[](ZString& s) {
             ZString target;
             target = std::move(s);
             return sample(target);
         },
         by_default},
        {[](ZString& s) {
             ZString sum = s + s;
             return sample(sum);
         },
         by_default},
        {[](ZString& s) {
             ZString part = s.left(2);
             return sample(part);
         },
         by_default},
        {[](ZString& s) {
             ZString part(s, 1, 1);
             return sample(part);
         },
         by_default},
    };
    for (const row_t& row : rows) {
        ZString s("text");
        s << base16 << left_justify << scientific << stars;
        s.set_width(3);
        s.set_precision(2);
        EXPECT_EQ(row.act(s), row.want) << &row - rows;
    }
}

TEST(text_output, floating_point_numbers_are_correctly_rounded) {
    struct row_t {
        double value;
        int precision;
        const char* fixed;
        const char* exponent;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const row_t rows[] = {
        {1234.5, 6, "1234.500000", "1.23450e003"},
        {0.000123, 6, "0.000123", "1.23000e-004"},
        {0.05, 3, "0.050", "5.00e-002"},
        {-1e-10, 6, "-0.000000", "-1.00000e-010"},
        {3, 0, "3.", "3.e000"},
        {3, -5, "3.", "3.e000"},
        {-31.5, 1, "-31.5", "-3.e001"},
        {9.9996, 3, "10.000", "1.00e001"},
        {999.5, 0, "1000.", "1.e003"}, // ties go to the even digit
        {0.5, 0, "0.", "5.e-001"},
        {2.5, 0, "2.", "2.e000"},
        {0.125, 2, "0.12", "1.2e-001"},
        {0.375, 2, "0.38", "3.8e-001"},
        {0.1, 20, "0.10000000000000000555", "1.0000000000000000555e-001"},
        {1e22, 1, "10000000000000000000000.0", "1.e022"},
        {5e-324, 4, "0.0000", "4.941e-324"},
        {DBL_MIN, 17, "0.00000000000000000", "2.2250738585072014e-308"},
        {0.0, 2, "0.00", "0.0e000"},
        {-0.0, 2, "-0.00", "-0.0e000"},
        {infinity, 6, "inf", "inf"},
        {-infinity, 0, "-inf", "-inf"},
        {nan, 2, "nan", "nan"},
        {std::copysign(nan, -1.0), 2, "nan", "nan"},
        {DBL_MAX, 1,
         "179769313486231570814527423731704356798070567525844996598917476803157260780028538760589558632766"
         "878171540458953514382464234321326889464182768467546703537516986049910576551282076245490090389328"
         "944075868508455133942304583236903222948165808559332123348274797826204144723168738177180919299881"
         "250404026184124858368.0",
         "2.e308"},
    };
    for (const row_t& row : rows) {
        byte_sink out;
        out.set_precision(row.precision);
        out << row.value << '|' << scientific << row.value;
        EXPECT_EQ(out.inq_bytes(), row.fixed + "|"s + row.exponent) << row.value << ", " << row.precision;
    }
}

TEST(text_output, floating_point_numbers_that_may_not_fit_are_reported) {
    struct row_t {
        double value;
        wsflag_t form;
        int largest_precision; // with the digits before the point, or the zeros behind it, and 16: up to 512
    };
    constexpr wsflag_t fixed{};
    const row_t rows[] = {{1, fixed, 495},
                          {1, wsflag_scientific, 495},
                          {-10, fixed, 494},
                          {0.5, fixed, 496},
                          {0.05, fixed, 495},
                          {DBL_MAX, fixed, 187},
                          {DBL_MAX, wsflag_scientific, 187},
                          {5e-324, wsflag_scientific, 173},
                          {0, fixed, 495},
                          {0, wsflag_scientific, 495}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(testing::Message() << row.value << ", " << row.form);
        recording_reporter reporter;
        byte_sink out;
        out.set_flag(row.form);
        out.set_precision(row.largest_precision);
        out << row.value;
        EXPECT_EQ(reporter.take_without_lines(), "");
        EXPECT_GT(out.inq_bytes().size(), static_cast<std::size_t>(row.largest_precision));
        EXPECT_LE(out.inq_bytes().size(), 512U);
        for (const int precision : {row.largest_precision + 1, 600, INT_MAX}) {
            byte_sink none;
            none.set_flag(row.form);
            none.set_precision(precision);
            none << width5 << row.value;
            EXPECT_EQ(reporter.take_without_lines(), "warning ZWStream: Buffer too small;");
            EXPECT_EQ((none << 'x', none).inq_bytes(), "    x"); // the width is still pending
        }
    }
    recording_reporter reporter;
    byte_sink out;
    out.set_precision(600);
    out << std::numeric_limits<double>::infinity() << std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(reporter.inq_reports().size(), 2U);
    EXPECT_EQ(out.inq_bytes(), "");
}

TEST(text_output, misuse_is_reported) {
    struct row_t {
        void (*write)(ZWStream& out);
        std::string want;
        const char* reports;
    };
    constexpr const char* bad_base = "assertion ZWStream: base >= 2 && base <= 36;";
    constexpr const char* too_long = "assertion ZWStream: c >= str;";
    const row_t rows[] = {
        {[](auto& out) { out << base16, out.set_base(1), out << 255; }, "FF", bad_base},
        {[](auto& out) { out << base16, out.set_base(37), out << 255; }, "FF", bad_base},
        {[](auto& out) { out.set_base(INT_MIN), out << 255; }, "255", bad_base},
        {[](auto& out) { out.set_width(-1), out << 'x'; }, "x", "assertion ZWStream: width >= 0;"},
        {[](auto& out) { out << base2 << 2147483647; }, std::string(31, '1'), ""},
        {[](auto& out) { out << base2 << 2147483648U; }, '1' + std::string(31, '0'), too_long},
        {[](auto& out) { out << base2 << -1; }, std::string(64, '1'), too_long},
        {[](auto& out) { out.set_base(3), out << 617673396283946; }, std::string(31, '2'), ""},
        {[](auto& out) { out.set_base(3), out << 617673396283947; }, '1' + std::string(31, '0'), too_long},
        {[](auto& out) { out.set_base(4), out << 4611686018427387903; }, std::string(31, '3'), ""},
        {[](auto& out) { out.set_base(4), out << 4611686018427387904; }, '1' + std::string(31, '0'),
         too_long},
    };
    for (const row_t& row : rows) {
        recording_reporter reporter;
        byte_sink out;
        row.write(out);
        EXPECT_EQ(out.inq_bytes(), row.want);
        EXPECT_EQ(reporter.take_without_lines(), row.reports);
    }
    byte_sink out;
    EXPECT_EQ(out.seek(5), -1);
    out.reset_format();
    EXPECT_EQ(out.inq_error(), 8);
}

TEST(text_output, digits_and_prefixes) {
    struct row_t {
        int base;
        std::string digits; // of 1 and of base - 1
        const char* prefixed;
    };
    const row_t rows[] = {{2, "11", "0b7"}, {8, "17", "7"},    {10, "19", "7"},
                          {11, "1A", "7"},  {16, "1F", "0x7"}, {36, "1Z", "7"}};
    for (const row_t& row : rows) {
        byte_sink out;
        out.set_base(row.base);
        EXPECT_EQ((std::string{out.digit_char(1), out.digit_char(row.base - 1)}), row.digits);
        ZString digits("7");
        out.add_base_prefix(digits);
        EXPECT_STREQ(digits, row.prefixed);
    }
}

TEST(binary_output, bytes) {
    struct row_t {
        bool (*write)(ZWStream& out);
        std::string want;
    };
    const row_t rows[] = {
        {[](auto& out) { return out.write_int8(-2); }, "\xFE"},
        {[](auto& out) { return out.write_uint8(200); }, "\xC8"},
        {[](auto& out) { return out.write_int16(-2); }, "\xFF\xFE"},
        {[](auto& out) { return out.write_uint16(65534); }, "\xFF\xFE"},
        {[](auto& out) { return out.write_uint16(0x1234); }, "\x12\x34"},
        {[](auto& out) { return out.write_int32(1); }, "\0\0\0\1"s},
        {[](auto& out) { return out.write_int32(INT_MIN); }, "\x80\0\0\0"s},
        {[](auto& out) { return out.write_int32(-2L); }, "\xFF\xFF\xFF\xFE"},
        {[](auto& out) { return out.write_uint32(0x12345678U); }, "\x12\x34\x56\x78"},
        {[](auto& out) { return out.write_uint32(0x9ABCDEF0UL); }, "\x9A\xBC\xDE\xF0"},
        {[](auto& out) { return out.write_float(1.0F); }, "\x3F\x80\0\0"s},
        {[](auto& out) { return out.write_float(-0.1F); }, "\xBD\xCC\xCC\xCD"},
        {[](auto& out) { return out.write_packed_int(0); }, "\0"s},
        {[](auto& out) { return out.write_packed_int(5); }, "\x05"},
        {[](auto& out) { return out.write_packed_int(127); }, "\x7F"},
        {[](auto& out) { return out.write_packed_int(128); }, "\x80\x80"},
        {[](auto& out) { return out.write_packed_int(300); }, "\x81\x2C"},
        {[](auto& out) { return out.write_packed_int(16383); }, "\xBF\xFF"},
        {[](auto& out) { return out.write_packed_int(16384); }, "\xC0\0\x40\0"s},
        {[](auto& out) { return out.write_packed_int(1073741823); }, "\xFF\xFF\xFF\xFF"},
        {[](auto& out) { return out.write("a\0b", 3); }, "a\0b"s},
        {[](auto& out) { return out.write(ZData("a\0b", 3)); }, "a\0b"s},
        {[](auto& out) { return out.write_cstring("abc"); }, "abc\0"s},
        {[](auto& out) { return out.write_cstring(""); }, "\0"s},
        {[](auto& out) { return out.write_cstring(ZString()); }, "\0"s},
        {[](auto& out) { return ZString("abc").write_to(out); }, "abc\0"s},
        {[](auto& out) { return ZString().write_to(out); }, "\0"s},
        {[](auto& out) { return ZData("a\0b", 3).write(out); }, "\0\0\0\3a\0b"s},
        {[](auto& out) { return ZData().write(out); }, "\0\0\0\0"s},
    };
    for (const row_t& row : rows) {
        SCOPED_TRACE(&row - rows);
        byte_sink out;
        out << base16 << width5 << stars << left_justify;
        EXPECT_TRUE(row.write(out));
        EXPECT_EQ(out.inq_bytes(), row.want);
        EXPECT_EQ((out << 'x', out).inq_bytes(), row.want + "x****"); // the width was left alone
        out.refuse();
        EXPECT_FALSE(row.write(out));
    }
}

TEST(binary_output, packed_integers_that_are_too_large_are_reported) {
    for (const unsigned int excess : {0U, 0x40000000U, 0x80000000U}) {
        recording_reporter reporter;
        byte_sink out;
        EXPECT_TRUE(out.write_packed_int(0x40000000U + excess + 5));
        EXPECT_EQ(out.inq_bytes(), "\xC0\0\0\5"s);
        EXPECT_EQ(reporter.take_without_lines(), "warning ZWStream: PackedInt out of range;");
        out.refuse();
        EXPECT_FALSE(out.write_packed_int(0x40000000U));
    }
}

} // namespace
