#include "tests/conversion/conversion_fixture.h"
#include "tests/conversion/sdk_double.h"
#include "tests/support/posix/without_privileges.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

TEST_F(conversion_fixture, fails_where_the_temporary_folder_cannot_be_written) {
    constexpr auto read_only = static_cast<fs::perms>(0555);
    fs::permissions(m_temporary, read_only);
    const sdk_double sdk(sdk_double::answers_t{{2, 34}});
    {
        const without_privileges nobody;
        EXPECT_EQ(convert(), 11);
    }
    EXPECT_EQ(named_calls(sdk), (calls_t{"EdsInitializeSDK()", "EdsCreateFileStream(RAW, 2, 2) -> error 34",
                                         "EdsTerminateSDK()"}));
    EXPECT_EQ(list_folder(m_temporary), calls_t());
    fs::permissions(m_temporary, fs::perms::owner_all);
}

} // namespace
