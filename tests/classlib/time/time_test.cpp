#include "classlib/time/ZDateTime.h"
#include "classlib/time/ZRandom.h"
#include "tests/support/shown_text.h"
#include "tests/support/time_zone_setting.h"

#include <cstdint>
#include <ctime>
#include <gtest/gtest.h>
#include <string>

namespace {

// The fields in their order, for comparison with one text.
std::string fields_of(const ZDateTime& date) {
    std::string text;
    for (const std::int64_t field : {date.m_year, date.m_month, date.m_day, date.m_day_of_week, date.m_hour,
                                     date.m_minute, date.m_second, date.m_millisecond})
        text += std::to_string(field) + ' ';
    return text + std::to_string(date.m_time);
}

ZDateTime filled() {
    ZDateTime date;
    date.m_year = 1;
    date.m_month = 2;
    date.m_day = 3;
    date.m_day_of_week = 4;
    date.m_hour = 5;
    date.m_minute = 6;
    date.m_second = 7;
    date.m_millisecond = 8;
    date.m_time = 9;
    return date;
}

TEST(date_time, a_time_value_fills_every_field) {
    struct row_t {
        const char* zone;
        std::uint32_t time;
        const char* want;
    };
    constexpr row_t rows[] = {{"UTC0", 0, "1970 1 1 4 0 0 0 0 0"},
                              {"UTC0", 951782399, "2000 2 28 1 23 59 59 0 951782399"},
                              {"UTC0", 951782400, "2000 2 29 2 0 0 0 0 951782400"},
                              {"UTC0", 1795010709, "2026 11 18 3 14 5 9 0 1795010709"},
                              {"UTC0", 4294967295, "2106 2 7 0 6 28 15 0 4294967295"},
                              {"EST5", 0, "1969 12 31 3 19 0 0 0 0"},
                              {"IST-5:30", 1795010709, "2026 11 18 3 19 35 9 0 1795010709"}};
    for (const row_t& row : rows) {
        const time_zone_setting zone(row.zone);
        ZDateTime date = filled();
        date.set_time(row.time);
        EXPECT_EQ(fields_of(date), row.want) << row.zone;
    }
}

TEST(date_time, parsing) {
    const time_zone_setting zone("UTC0");
    constexpr int any = 0;
    struct row_t {
        const char* text;
        int style;
        bool is_date;
        const char* want;
    };
    constexpr row_t rows[] = {
        {"18/11/2026", any, true, "2026 11 18 0 0 0 0 0 1794960000"},
        {"18/11/26", 1, true, "2026 11 18 0 0 0 0 0 1794960000"},
        {" 1/ 2/75 and more", -7, true, "1975 2 1 0 0 0 0 0 160444800"},
        {"2026-11-18", 2, true, "2026 11 18 0 0 0 0 0 1794960000"},
        {"18/11/2026 14:05", 3, true, "2026 11 18 0 14 5 0 0 1795010700"},
        {"18/11/2026 14:05", any, true, "2026 11 18 0 0 0 0 0 1794960000"},
        {"18/11/2026 14", 3, true, "2026 11 18 0 14 0 0 0 1795010400"},
        {"18/11/2026", 3, true, "2026 11 18 0 0 0 0 0 1794960000"},
        {"1/1/49", any, true, "2049 1 1 0 0 0 0 0 2493072000"},
        {"1/1/50", any, true, "1950 1 1 0 0 0 0 0 -1"},
        {"1/1/99", any, true, "1999 1 1 0 0 0 0 0 915148800"},
        {"1/1/100", any, true, "100 1 1 0 0 0 0 0 -1"},
        {"1/1/-1", any, true, "1999 1 1 0 0 0 0 0 915148800"},
        {"31/2/2026", any, true, "2026 2 31 0 0 0 0 0 1772496000"}, // not checked, yet 3 March as a time
        {"0/13/2026", any, true, "2026 13 0 0 0 0 0 0 1798675200"},
        {"1/1/2026 48:-1", 3, true, "2026 1 1 0 48 -1 0 0 1767398340"},
        {"1/1/1970", any, true, "1970 1 1 0 0 0 0 0 0"},
        {"31/12/1969", any, true, "1969 12 31 0 0 0 0 0 -1"},
        {"31/12/3000", any, true, "3000 12 31 0 0 0 0 0 32535129600"},
        {"1/1/3001", any, true, "3001 1 1 0 0 0 0 0 -1"},
        {"1/-2147483648/2147483647", any, true, "2147483647 -2147483648 1 0 0 0 0 0 -1"},
        {"18/11", any, false, "1 11 18 0 0 0 0 0 9"},
        {"18-11-2026", any, false, "1 2 18 0 0 0 0 0 9"},
        {"2026/11/18", 2, false, "2026 2 3 0 0 0 0 0 9"},
        {"noon", any, false, "1 2 3 0 0 0 0 0 9"},
        {"", any, false, "1 2 3 0 0 0 0 0 9"},
        {nullptr, 2, false, "1 2 3 0 0 0 0 0 9"},
    };
    for (const row_t& row : rows) {
        ZDateTime date = filled();
        EXPECT_EQ(date.parse(row.text, row.style), row.is_date) << shown(row.text);
        EXPECT_EQ(fields_of(date), row.want) << shown(row.text);
    }
}

TEST(date_time, formatting) {
    const time_zone_setting zone("UTC0");
    ZDateTime date;
    date.set_time(1795010709);
    EXPECT_EQ(plain(date.inq_long_text()), "14:05 Wednesday 18 November 2026");
    EXPECT_EQ(plain(date.inq_long_date()), "Wednesday 18 November 2026");
    EXPECT_EQ(plain(date.inq_short_date()), "18/11/2026");
    EXPECT_EQ(plain(date.inq_timestamp()), "Wed 18-Nov-2026 14:05:09");
    EXPECT_EQ(plain(date.inq_iso_date()), "2026-11-18");
    ASSERT_TRUE(date.parse("5/3/26", 0));
    EXPECT_EQ(plain(date.inq_short_date()), "05/03/2026");
    EXPECT_EQ(plain(date.inq_iso_date()), "2026-03-05");

    EXPECT_EQ(plain(date.format("%d\xE9%%")), "05<E9>%");
    EXPECT_EQ(plain(date.format("")), "");
    EXPECT_EQ(plain(date.format(nullptr)), "");
    EXPECT_EQ(plain(date.format(std::string(127, 'x').c_str())), std::string(127, 'x'));
    EXPECT_EQ(plain(date.format(std::string(128, 'x').c_str())), "");
}

TEST(date_time, broken_down_time) {
    std::tm tm{};
    tm.tm_yday = 123;
    tm.tm_isdst = 45;
    filled().to_tm(tm);
    EXPECT_EQ(tm.tm_year, -1899);
    EXPECT_EQ(tm.tm_mon, 1);
    EXPECT_EQ(tm.tm_mday, 3);
    EXPECT_EQ(tm.tm_wday, 4);
    EXPECT_EQ(tm.tm_hour, 5);
    EXPECT_EQ(tm.tm_min, 6);
    EXPECT_EQ(tm.tm_sec, 7);
    EXPECT_EQ(tm.tm_yday, 123);
    EXPECT_EQ(tm.tm_isdst, 45);
}

TEST(date_time, now_lies_between_two_looks_at_the_clock) {
    const time_zone_setting zone("IST-5:30");
    const std::int64_t before = std::time(nullptr);
    ZDateTime now;
    now.set_now();
    const std::int64_t after = std::time(nullptr);
    EXPECT_LE(before, now.m_time + 1); // the two clocks of the system may differ by a tick
    EXPECT_LE(now.m_time, after);
    EXPECT_GE(now.m_millisecond, 0);
    EXPECT_LE(now.m_millisecond, 999);
    ZDateTime same;
    same.set_time(static_cast<std::uint32_t>(now.m_time));
    same.m_millisecond = now.m_millisecond;
    EXPECT_EQ(fields_of(now), fields_of(same));
}

TEST(random, values_of_the_minimal_standard_generator) {
    ZRandom random(1);
    EXPECT_EQ(random.inq_value(), 1);
    random.advance();
    EXPECT_EQ(random.inq_value(), 16807);
    random.advance();
    EXPECT_EQ(random.inq_value(), 282475249);
    for (int i = 2; i < 10000; ++i)
        random.advance();
    EXPECT_EQ(random.inq_value(), 1043618065); // as published

    ZRandom at_the_modulus(0x7FFFFFFF);
    at_the_modulus.advance();
    EXPECT_EQ(at_the_modulus.inq_value(), 0x7FFFFFFF);
}

TEST(random, parts_of_the_values) {
    ZRandom bytes(1);
    for (const int byte : {0xA7, 0x41, 0x00, 0xF1, 0x3A, 0xD6})
        EXPECT_EQ(bytes.next_byte(), byte);
    ZRandom words(1);
    EXPECT_EQ(words.next_u16(), 0x41A7);
    EXPECT_EQ(words.next_byte(), 0x00); // the third byte of the same value
    EXPECT_EQ(words.next_byte(), 0xF1);
    EXPECT_EQ(words.next_u16(), 1622650073 & 0xFFFF);
    ZRandom doubles(1);
    EXPECT_EQ(doubles.next_double(), 16806 / 2147483647.0);
    EXPECT_EQ(doubles.next_byte(), 0xF1);
    ZRandom pairs(1);
    EXPECT_EQ(pairs.next_u32(), 0x41A73AF1U);
    EXPECT_EQ(pairs.next_byte(), 0xD6);
}

TEST(random, seeds) {
    EXPECT_EQ(ZRandom(static_cast<int>(0x80000005)).inq_value(), 5);
    ZRandom random(1);
    random.next_byte();
    EXPECT_EQ(random.set_seed(-1), 0x7FFFFFFF);
    EXPECT_EQ(random.set_seed(1), 1);
    EXPECT_EQ(random.next_byte(), 0xA7); // no byte of the old value is left
    ZRandom copy = random;
    EXPECT_EQ(copy.next_u32(), random.next_u32());
    EXPECT_EQ(&ZRandom::instance(), &ZRandom::instance());
}

TEST(random, a_seed_of_zero_bits_is_taken_from_the_clock) {
    for (const int seed : {0, static_cast<int>(0x80000000)}) {
        ZDateTime before;
        ZDateTime after;
        std::int32_t value = 0;
        do {
            before.set_now();
            value = ZRandom(seed).inq_value();
            after.set_now();
        } while (fields_of(before) != fields_of(after));
        const auto seconds = static_cast<std::uint32_t>(before.m_time);
        const std::uint32_t swapped = seconds >> 16 | seconds << 16;
        const auto milliseconds = static_cast<std::uint32_t>(before.m_millisecond);
        EXPECT_EQ(static_cast<std::uint32_t>(value), (milliseconds << 8 ^ swapped) & 0x7FFFFFFF);
    }
}

} // namespace
