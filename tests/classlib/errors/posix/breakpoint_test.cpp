#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/errors/checks.h"
#include "classlib/strings/ZUString.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

class breaking_reporter final : public ZProgramErrorOutput {
    bool show_report(const ZUString& /*report*/) override { return true; }
};

TEST(breakpoint, follows_the_report_when_the_reporter_asks_for_it) {
    testing::internal::CaptureStdout();
    program_output(UTF16("\u00E9\U0001F4F7"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\xC3\xA9\xF0\x9F\x93\xB7");
    breaking_reporter reporter;
    set_program_error_output(&reporter);
    EXPECT_EXIT(ZASSERT(false), testing::KilledBySignal(SIGTRAP), "");
    EXPECT_EXIT(ZWARNING(UTF16("careful")), testing::KilledBySignal(SIGTRAP), "");
    set_program_error_output(nullptr);
}

} // namespace
