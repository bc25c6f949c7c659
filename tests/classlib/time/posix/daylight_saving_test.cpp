#include "classlib/time/ZDateTime.h"
#include "tests/support/time_zone_setting.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace {

// The rule is spelled out, so that no time zone data need be installed.
TEST(daylight_saving, the_system_works_it_out) {
    const time_zone_setting zone("CET-1CEST,M3.5.0,M10.5.0/3");
    struct row_t {
        const char* text;
        std::uint32_t time;
    };
    constexpr row_t rows[] = {{"18/1/2026 12:30", 1768735800}, {"18/7/2026 12:30", 1784370600}};
    for (const row_t& row : rows) {
        ZDateTime date;
        EXPECT_TRUE(date.parse(row.text, 3));
        EXPECT_EQ(date.m_time, row.time) << row.text;
        date.set_time(row.time);
        EXPECT_EQ(date.m_hour, 12) << row.text;
        EXPECT_EQ(date.m_minute, 30) << row.text;
    }
}

} // namespace
