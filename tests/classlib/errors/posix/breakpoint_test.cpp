#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/errors/checks.h"
#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZUString.h"

#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>

namespace {

class breaking_reporter final : public ZProgramErrorOutput {
public:
    bool show_report(const ZUString& report) override {
        std::fputs(ZMBString(report), stderr);
        return true;
    }
};

TEST(breakpoint, follows_the_report_when_the_reporter_asks_for_it) {
    breaking_reporter reporter;
    set_program_error_output(&reporter);
    const bool holds = false;
    EXPECT_EXIT(ZASSERT(holds), testing::KilledBySignal(SIGTRAP), "in 'breakpoint_test', holds\\)\\.$");
    EXPECT_EXIT(ZWARNING(UTF16("careful")), testing::KilledBySignal(SIGTRAP),
                "in 'breakpoint_test'\\)\n\ncareful$");
    set_program_error_output(nullptr);
}

TEST(default_reporter, prints_utf8) {
    testing::internal::CaptureStdout();
    program_warning(UTF16("\u00E9\U0001F4F7"), "ZKV", 1);
    EXPECT_TRUE(testing::internal::GetCapturedStdout().ends_with("\n\n\xC3\xA9\xF0\x9F\x93\xB7\n"));
}

} // namespace
