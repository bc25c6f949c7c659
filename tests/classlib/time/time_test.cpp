#include "classlib/time/ZDateTime.h"
#include "classlib/time/ZRandom.h"
#include "tests/support/shown_text.h"
#include "tests/support/time_zone_setting.h"

#include <cstdint>
#include <ctime>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <tuple>

namespace {

// Every field, in the order of the record.
std::string fields_of(const ZDateTime& d) {
    std::ostringstream text;
    text << d.m_year << ' ' << d.m_month << ' ' << d.m_day << ' ' << d.m_day_of_week << ' ' << d.m_hour << ' '
         << d.m_minute << ' ' << d.m_second << ' ' << d.m_millisecond << ' ' << d.m_time;
    return text.str();
}

// A record whose fields are 1 to 9.
ZDateTime filled() {
    ZDateTime date;
    std::int32_t value = 0;
    for (std::int32_t* const field : {&date.m_year, &date.m_month, &date.m_day, &date.m_day_of_week,
                                      &date.m_hour, &date.m_minute, &date.m_second, &date.m_millisecond})
        *field = ++value;
    date.m_time = ++value;
    return date;
}

TEST(date_time, a_time_value_fills_every_field) {
    using row_t = std::tuple<const char*, std::uint32_t, const char*>;
    const row_t rows[] = {{"UTC0", 951782400, "2000 2 29 2 0 0 0 0 951782400"},
                          {"UTC0", 4294967295, "2106 2 7 0 6 28 15 0 4294967295"},
                          {"EST5", 0, "1969 12 31 3 19 0 0 0 0"},
                          {"IST-5:30", 1795010709, "2026 11 18 3 19 35 9 0 1795010709"}};
    for (const auto& [name, time, want] : rows) {
        const time_zone_setting zone(name);
        ZDateTime date = filled();
        date.set_time(time);
        EXPECT_EQ(fields_of(date), want) << name;
    }
}

TEST(date_time, parsing) {
    const time_zone_setting zone("UTC0");
    constexpr int any = 0;
    using row_t = std::tuple<const char*, int, bool, const char*>;
    const row_t rows[] = {
        {"18/11/26", 1, true, "2026 11 18 0 0 0 0 0 1794960000"},
        {" 1/ 2/75 and more", -7, true, "1975 2 1 0 0 0 0 0 160444800"},
        {"2026-11-18", 2, true, "2026 11 18 0 0 0 0 0 1794960000"},
        {"18/11/2026 14:05", 3, true, "2026 11 18 0 14 5 0 0 1795010700"},
        {"1/1/49", any, true, "2049 1 1 0 0 0 0 0 2493072000"},
        {"1/1/50", any, true, "1950 1 1 0 0 0 0 0 -1"},
        {"1/1/99", any, true, "1999 1 1 0 0 0 0 0 915148800"},
        {"31/2/2026", any, true, "2026 2 31 0 0 0 0 0 1772496000"}, // kept, and the same moment as 3 March
        {"1/1/3001", any, true, "3001 1 1 0 0 0 0 0 -1"},
        {"1/-2147483648/2147483647", any, true, "2147483647 -2147483648 1 0 0 0 0 0 -1"},
        {"18/11", any, false, "1 11 18 0 0 0 0 0 9"},
        {"2026/11/18", 2, false, "2026 2 3 0 0 0 0 0 9"},
        {nullptr, 2, false, "1 2 3 0 0 0 0 0 9"},
    };
    for (const auto& [text, style, is_date, want] : rows) {
        ZDateTime date = filled();
        EXPECT_EQ(date.parse(text, style), is_date) << shown(text);
        EXPECT_EQ(fields_of(date), want) << shown(text);
    }
}

TEST(date_time, formatting) {
    const time_zone_setting zone("UTC0");
    ZDateTime date;
    date.set_time(1795010709);
    EXPECT_EQ(plain(date.inq_long_text()), "14:05 Wednesday 18 November 2026");
    EXPECT_EQ(plain(date.inq_long_date()), "Wednesday 18 November 2026");
    EXPECT_EQ(plain(date.inq_timestamp()), "Wed 18-Nov-2026 14:05:09");
    ASSERT_TRUE(date.parse("5/3/26", 0));
    EXPECT_EQ(plain(date.inq_short_date()), "05/03/2026");
    EXPECT_EQ(plain(date.inq_iso_date()), "2026-03-05");
    EXPECT_EQ(plain(date.format("%d\xE9%%")), "05<E9>%");
    EXPECT_EQ(plain(date.format(nullptr)), "");
    EXPECT_EQ(plain(date.format(std::string(127, 'x').c_str())), std::string(127, 'x'));
    EXPECT_EQ(plain(date.format(std::string(128, 'x').c_str())), "");
}

// In the zone that the process starts in: not every system's clock follows a change.
TEST(date_time, now_is_the_local_time_of_the_clock) {
    const std::int64_t before = std::time(nullptr);
    ZDateTime now;
    now.set_now();
    EXPECT_LE(before, now.m_time + 1); // the system's two clocks may differ by a tick
    EXPECT_LE(now.m_time, std::time(nullptr) + 1);
    EXPECT_TRUE(now.m_millisecond >= 0 && now.m_millisecond <= 999) << now.m_millisecond;
    ZDateTime same;
    same.set_time(static_cast<std::uint32_t>(now.m_time));
    same.m_millisecond = now.m_millisecond;
    EXPECT_EQ(fields_of(now), fields_of(same));
}

// From the seed 1: 16807 = 0x000041A7, 282475249 = 0x10D63AF1, 1622650073 = 0x60B7ACD9.
TEST(random, parts_of_the_values) {
    ZRandom bytes(1);
    for (const int byte : {0xA7, 0x41, 0x00, 0xF1, 0x3A, 0xD6})
        EXPECT_EQ(bytes.next_byte(), byte);
    ZRandom words(1);
    EXPECT_EQ(words.next_u16(), 0x41A7);
    EXPECT_EQ(words.next_byte(), 0x00); // the third byte of the same value
    EXPECT_EQ(words.next_byte(), 0xF1);
    EXPECT_EQ(words.next_u16(), 0xACD9);
    ZRandom doubles(1);
    EXPECT_EQ(doubles.next_double(), 16806 / 2147483647.0);
    EXPECT_EQ(doubles.next_byte(), 0xF1);
    ZRandom pairs(1);
    EXPECT_EQ(pairs.next_u32(), 0x41A73AF1U);
    EXPECT_EQ(pairs.next_byte(), 0xD6);
}

TEST(random, steps_and_seeds) {
    ZRandom random(static_cast<int>(0x80000001)); // a seed has 31 bits
    for (int step = 0; step < 10000; ++step)
        random.advance();
    EXPECT_EQ(random.inq_value(), 1043618065); // the published check value
    EXPECT_EQ(random.set_seed(-1), 0x7FFFFFFF);
    random.advance();
    EXPECT_EQ(random.inq_value(), 0x7FFFFFFF);
    EXPECT_EQ(random.set_seed(1), 1);
    EXPECT_EQ(random.next_byte(), 0xA7); // nothing is left of the last value
    EXPECT_EQ(&ZRandom::instance(), &ZRandom::instance());
}

TEST(random, a_seed_without_bits_is_taken_from_the_clock) {
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
