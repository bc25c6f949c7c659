#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "classlib/errors/ZKVDException.h"
#include "classlib/errors/checks.h"
#include "tests/support/recording_reporter.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <typeinfo>

namespace {

TEST(errors, default_reporter_prints_each_report_and_asks_for_no_break) {
    const std::string heading = "Warning: Internal program error.  ";
    const std::string mild = heading + "Press Retry or Ignore to continue.\n";
    const std::string grave = heading +
                              "The program may crash or become unstable, so you are advised to quit and "
                              "restart.  Press Retry or Ignore to attempt to continue.\n";
    using row_t = std::tuple<decltype(&program_error), const char*, int, std::string>;
    const row_t rows[] = {
        {&program_assertion_failure, "i >= 0", 147,
         mild + "(Assertion failure at line 147 in 'ZFile', i >= 0).\n"},
        {&program_warning, "Too small", 224, mild + "(at line 224 in 'ZFile')\n\nToo small\n"},
        {&program_error, "two\nlines", INT_MIN,
         grave + "(Error at line -2147483648 in 'ZFile', two\nlines).\n"},
        {&program_error, "", -3, grave + "(Error at line -3 in 'ZFile').\n"},
    };
    for (const auto& [report, text, line, want] : rows) {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(report(text, "ZFile", line));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), want);
    }
    testing::internal::CaptureStdout();
    program_output("a\n b");
    program_output(ZUString());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\n b");
}

TEST(errors, checks_report_their_place_and_let_the_operation_go_on) {
    recording_reporter reporter;
    int n_evaluated = 0;
    ZASSERT(++n_evaluated == 1);
    EXPECT_EQ(reporter.take(), "");
    ZASSERT(++n_evaluated == 1 && "never");
    EXPECT_EQ(reporter.inq_last_line(), __LINE__ - 1);
    ZWARNING(ZUString("Illegal keyname: '") << UTF16("a b") << "'.");
    EXPECT_EQ(reporter.inq_last_line(), __LINE__ - 1);
    program_error("e", "ZE", 3);
    program_output("o");
    EXPECT_EQ(n_evaluated, 2);
    EXPECT_EQ(reporter.take(), "assertion errors_test: ++n_evaluated == 1 && \"never\";"
                               "warning errors_test: Illegal keyname: 'a b'.;error ZE: e;output: o;");
    EXPECT_STREQ(source_stem_t("C:\\work.old\\Z.inl.h").text, "Z.inl");
    EXPECT_STREQ(source_stem_t("../a.b/Makefile").text, "Makefile");
}

TEST(errors, exceptions_are_described_and_raised_with_their_full_type) {
    const ZFileLocation picture("C:\\Photos\\a.cr2", false);
    const ZException base("BASE", INT_MIN);
    ZFileException file(picture, fileerr_rename);
    errno = ENOENT;
    const ZCrtErrorException crt(picture);
    const ZKVDException kvd("\xE9", "Wrong type");
    using row_t = std::tuple<const ZException&, const char*, int, std::string>;
    const row_t rows[] = {
        {base, "BASE", INT_MIN, "ZException: BASE, -2147483648"},
        {file, "FILE", 5, "ZFileException: Unknown error (id=5) with file: C:\\Photos\\a.cr2"},
        {crt, "CRTERROR", ENOENT, std::string("ZCrtErrorException: ") + std::strerror(ENOENT)},
        {kvd, "ZKVD", 0, "Error with KVD key '<E9>': Wrong type"}};
    for (const auto& [exception, id, code, description] : rows) {
        try {
            exception.raise();
        } catch (const ZException& raised) {
            EXPECT_EQ(typeid(raised), typeid(exception)) << id;
            EXPECT_STREQ(raised.inq_id(), id);
            EXPECT_EQ(raised.inq_code(), code) << id;
            EXPECT_EQ(plain(raised.describe()), description);
        }
    }
    EXPECT_EQ(crt.inq_file(), picture);
    int code = fileerr_missing;
    for (const char* const kind : {"Missing file: ", "Failed to open file for reading: ",
                                   "Failed to open file for writing: ", "Corrupt data in file: "})
        EXPECT_TRUE(
            plain(file.set_code(code++).describe()).starts_with(std::string("ZFileException: ") + kind));
}

} // namespace
