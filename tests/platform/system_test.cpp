#include "platform/clock.h"
#include "tests/support/time_zone_setting.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(clock, what_the_system_cannot_convert_is_all_zero) {
    const time_zone_setting zone("UTC0");
    const std::tm none = platform::to_local_time(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(none.tm_year, 0);
    EXPECT_EQ(none.tm_mday, 0);
}

} // namespace
