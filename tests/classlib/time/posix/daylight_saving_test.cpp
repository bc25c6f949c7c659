#include "classlib/time/ZDateTime.h"
#include "tests/support/time_zone_setting.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <utility>

namespace {

// The rule is spelled out, so that no time zone data need be installed.
TEST(daylight_saving, the_system_works_it_out) {
    const time_zone_setting zone("CET-1CEST,M3.5.0,M10.5.0/3");
    using row_t = std::pair<const char*, std::uint32_t>;
    for (const auto& [text, time] :
         {row_t{"18/1/2026 12:30", 1768735800}, row_t{"18/7/2026 12:30", 1784370600}}) {
        ZDateTime date;
        EXPECT_TRUE(date.parse(text, 3));
        EXPECT_EQ(date.m_time, time) << text;
        date.set_time(time);
        EXPECT_EQ(date.m_hour, 12) << text;
        EXPECT_EQ(date.m_minute, 30) << text;
    }
}

} // namespace
