#include "classlib/time/ZDateTime.h"
#include "tests/support/shown_text.h"
#include "tests/support/time_zone_setting.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

TEST(daylight_saving, the_system_works_it_out) {
    // The rule of Berlin, spelled out so that no time zone data need be installed.
    const time_zone_setting zone("CET-1CEST,M3.5.0,M10.5.0/3");
    for (const auto& [text, time, completed] : {std::tuple("18/1/2026 12:30", 1768735800, "018 03 CET +0100"),
                                                {"18/7/2026 12:30", 1784370600, "199 28 CEST +0200"}}) {
        ZDateTime date;
        EXPECT_TRUE(date.parse(text, 3));
        EXPECT_EQ(date.m_time, time) << text;
        date.set_time(static_cast<std::uint32_t>(time));
        EXPECT_EQ(plain(date.format("%e/%-m/%Y %H:%M")), text);
        EXPECT_EQ(plain(date.format("%j %U %Z %z")), completed);
    }
}

} // namespace
