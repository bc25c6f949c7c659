#include "platform/clock.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(clock, what_the_system_cannot_convert_is_all_zero) {
    const std::tm none = platform::to_local_time(std::numeric_limits<std::int64_t>::max());
    EXPECT_TRUE(none.tm_year == 0 && none.tm_mday == 0);
}

} // namespace
