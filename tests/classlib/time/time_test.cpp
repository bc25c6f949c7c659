#include "classlib/time/ZDateTime.h"
#include "classlib/time/ZRandom.h"
#include "tests/support/shown_text.h"
#include "tests/support/time_zone_setting.h"

#include <bit>
#include <gtest/gtest.h>
#include <tuple>

namespace {

// A year, month, day, day of the week, hour, minute, second, millisecond and time value.
using fields_t = std::vector<std::int64_t>;

fields_t fields_of(const ZDateTime& d) {
    return {d.m_year,   d.m_month,  d.m_day,         d.m_day_of_week, d.m_hour,
            d.m_minute, d.m_second, d.m_millisecond, d.m_time};
}

// A record whose fields are 1 to 9.
ZDateTime filled() {
    ZDateTime d;
    std::tie(d.m_year, d.m_month, d.m_day, d.m_day_of_week) = std::tuple(1, 2, 3, 4);
    std::tie(d.m_hour, d.m_minute, d.m_second, d.m_millisecond, d.m_time) = std::tuple(5, 6, 7, 8, 9);
    return d;
}

TEST(date_time, a_time_value_or_a_text_fills_every_field) {
    for (const auto& [name, time, want] :
         {std::tuple("UTC0", 4294967295, fields_t{2106, 2, 7, 0, 6, 28, 15, 0, 4294967295}),
          {"CET-1CEST", 1784370600, {2026, 7, 18, 6, 12, 30, 0, 0, 1784370600}}, // daylight saving
          {"CET-1CEST", 1768735800, {2026, 1, 18, 0, 12, 30, 0, 0, 1768735800}},
          {"EST5", 86400, {1970, 1, 1, 4, 19, 0, 0, 0, 86400}}}) {
        const time_zone_setting zone(name);
        ZDateTime date = filled();
        date.set_time(static_cast<std::uint32_t>(time));
        EXPECT_EQ(fields_of(date), want) << name;
        EXPECT_TRUE(date.parse(date.format("%d/%m/%Y %H:%M"), 3));
        EXPECT_EQ(date.m_time, time / 60 * 60);
    }
    const time_zone_setting zone("UTC0");
    using row_t = std::tuple<const char*, int, bool, fields_t>;
    const row_t rows[] = {
        {" 1/ 2/75 and more", -7, true, {1975, 2, 1, 0, 0, 0, 0, 0, 160444800}},
        {"2026-11-18", 2, true, {2026, 11, 18, 0, 0, 0, 0, 0, 1794960000}},
        {"1/1/49", 1, true, {2049, 1, 1, 0, 0, 0, 0, 0, 2493072000}},
        {"1/1/50", 1, true, {1950, 1, 1, 0, 0, 0, 0, 0, -1}},
        {"31/2/2026", 1, true, {2026, 2, 31, 0, 0, 0, 0, 0, 1772496000}}, // kept, and 3 March
        {"1/-2147483648/2147483647", 1, true, {2147483647, -2147483648, 1, 0, 0, 0, 0, 0, -1}},
        {"18/11", 1, false, {1, 11, 18, 0, 0, 0, 0, 0, 9}},
        {nullptr, 2, false, {1, 2, 3, 0, 0, 0, 0, 0, 9}}};
    for (const auto& [text, style, is_date, want] : rows) {
        ZDateTime date = filled();
        EXPECT_EQ(date.parse(text, style), is_date) << shown(text);
        EXPECT_EQ(fields_of(date), want) << shown(text);
    }
}

TEST(date_time, formatting) {
    const time_zone_setting zone("UTC0");
    ZDateTime date;
    date.set_time(1772690709);
    EXPECT_EQ(plain(date.inq_long_text()), "06:05 Thursday 05 March 2026");
    EXPECT_EQ(plain(date.inq_timestamp()), "Thu 05-Mar-2026 06:05:09");
    EXPECT_EQ(plain(date.inq_short_date()), "05/03/2026");
    EXPECT_EQ(plain(date.format("%d\xE9%%")) + plain(date.format(nullptr)), "05<E9>%");
    EXPECT_EQ(date.format(std::string(127, 'x').c_str()).length(), 127);
    EXPECT_EQ(date.format(std::string(128, 'x').c_str()).length(), 0);
}

// In the zone that the process starts in: not every system's clock follows a change.
TEST(date_time, now_is_the_local_time_of_the_clock_and_the_seed_that_has_no_bits) {
    const std::int64_t start = std::time(nullptr);
    ZDateTime before;
    ZDateTime after;
    std::int32_t value = 0;
    do {
        before.set_now();
        value = ZRandom(static_cast<int>(0x80000000)).inq_value();
        after.set_now();
    } while (fields_of(before) != fields_of(after));
    const auto seconds = static_cast<std::uint32_t>(before.m_time);
    const std::uint32_t seed = static_cast<std::uint32_t>(before.m_millisecond) << 8 ^ std::rotl(seconds, 16);
    EXPECT_EQ(static_cast<std::uint32_t>(value), seed & 0x7FFFFFFF);
    EXPECT_LE(std::abs(before.m_time - start), 60);
    after.set_time(seconds);
    after.m_millisecond = before.m_millisecond;
    EXPECT_EQ(fields_of(before), fields_of(after));
}

// From the seed 1: 16807 = 0x000041A7, 282475249 = 0x10D63AF1, 1622650073 = 0x60B7ACD9.
TEST(random, values_and_their_parts) {
    ZRandom random(static_cast<int>(0x80000001)); // a seed has 31 bits
    for (const int byte : {0xA7, 0x41, 0x00, 0xF1})
        EXPECT_EQ(random.next_byte(), byte);
    EXPECT_EQ(random.next_u16(), 0xACD9);
    EXPECT_EQ(random.set_seed(1), 1); // nothing is left of the last value
    EXPECT_EQ(random.next_u16(), 0x41A7);
    EXPECT_EQ(random.next_byte(), 0x00); // the third byte of the same value
    EXPECT_EQ(ZRandom(1).next_double(), 16806 / 2147483647.0);
    random.set_seed(1);
    for (int step = 0; step < 10000; ++step)
        random.advance();
    EXPECT_EQ(random.inq_value(), 1043618065); // the published check value
    EXPECT_EQ(random.set_seed(-1), 0x7FFFFFFF);
    random.advance();
    EXPECT_EQ(random.inq_value(), 0x7FFFFFFF);
}

} // namespace
