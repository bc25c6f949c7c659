#include "conversion/convert_raw_to_tiff.h"
#include "tests/conversion/conversion_fixture.h"
#include "tests/conversion/sdk_double.h"
#include "tests/support/allocation_meter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr int enough_to_mean_something = 10;

// Either no call at all, or one session that is ended once and last.
void check_session(const calls_t& calls) {
    const auto count = [&](std::string_view function) {
        return std::ranges::count_if(calls,
                                     [=](const std::string& call) { return call.starts_with(function); });
    };
    const int n_sessions = calls.empty() ? 0 : 1;
    EXPECT_EQ(count("EdsInitializeSDK"), n_sessions);
    EXPECT_EQ(count("EdsTerminateSDK"), n_sessions);
    EXPECT_TRUE(calls.empty() || calls.back().starts_with("EdsTerminateSDK"));
}

TEST_F(conversion_fixture, fails_cleanly_wherever_memory_runs_out) {
    const ZFileLocation raw = location_of(m_raw);
    const ZFileLocation tiff = location_of(m_tiff);
    for (const sdk_double::answers_t& answers : {sdk_double::answers_t{}, sdk_double::answers_t{{2, 34}}}) {
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            const sdk_double sdk(answers);
            allocation_meter::section memory(n);
            const int result = convert_raw_to_tiff(raw, tiff);
            memory.stop();

            has_failed = memory.inq_failed();
            EXPECT_EQ(result, has_failed ? 11 : 0);
            EXPECT_EQ(memory.inq_held(), 0);
            EXPECT_EQ(sdk.inq_misuses(), calls_t());
            check_session(sdk.inq_calls());
            EXPECT_EQ(list_folder(m_temporary), calls_t());
            EXPECT_TRUE(has_failed || n > enough_to_mean_something);
        }
    }
}

} // namespace
