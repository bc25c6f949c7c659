#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "classlib/errors/ZKVDException.h"
#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/errors/checks.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/shown_text.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <typeinfo>
#include <utility>
#include <vector>

namespace {

TEST(default_reporter, prints_each_report_and_asks_for_no_break) {
    const std::string heading = "Warning: Internal program error.  Press Retry or Ignore to continue.\n";
    const std::string grave_heading =
        "Warning: Internal program error.  The program may crash or become unstable, so you are advised to "
        "quit and restart.  Press Retry or Ignore to attempt to continue.\n";
    using report_t = bool (*)(const ZUString& text, const char* file, int line);
    using row_t = std::tuple<report_t, const char*, int, std::string>;
    const row_t rows[] = {
        {&program_assertion_failure, "i >= 0", 147,
         heading + "(Assertion failure at line 147 in 'ZFile', i >= 0).\n"},
        {&program_warning, "Too small", 224, heading + "(at line 224 in 'ZFile')\n\nToo small\n"},
        {&program_warning, "", -5, heading + "(at line -5 in 'ZFile')\n"},
        {&program_error, "two\nlines", INT_MIN,
         grave_heading + "(Error at line -2147483648 in 'ZFile', two\nlines).\n"},
        {&program_error, nullptr, 3, grave_heading + "(Error at line 3 in 'ZFile').\n"},
    };
    for (const auto& [report, text, line, want] : rows) {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(report(wide(text), "ZFile", line));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), want);
    }
    testing::internal::CaptureStdout();
    program_output(wide("a\n b"));
    program_output(ZUString());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\n b");
}

TEST(checks, report_their_place_and_let_the_operation_go_on) {
    const recording_reporter reporter;
    int n_evaluated = 0;
    ZASSERT(++n_evaluated == 1);
    EXPECT_EQ(reporter.inq_reports().size(), 0U);
    const int line = __LINE__ + 1;
    ZASSERT(++n_evaluated == 1 && "never");
    ZWARNING(ZUString("Illegal keyname: '") << UTF16("a b") << "'.");
    program_error(wide("e"), "ZE", 3);
    program_output(wide("o"));
    EXPECT_EQ(n_evaluated, 2);
    EXPECT_EQ(reporter.inq_reports(),
              (std::vector<std::string>{
                  "assertion " + std::to_string(line) + " errors_test: ++n_evaluated == 1 && \"never\"",
                  "warning " + std::to_string(line + 1) + " errors_test: Illegal keyname: 'a b'.",
                  "error 3 ZE: e", "output 0 : o"}));
    EXPECT_STREQ(source_stem_t("C:\\work.old\\Z.inl.h").text, "Z.inl");
    EXPECT_STREQ(source_stem_t("../a.b/Makefile").text, "Makefile");
}

TEST(exceptions, are_described_and_raised_with_their_full_type) {
    const ZFileLocation picture{wide("C:\\Photos\\a.cr2"), false};
    const ZException base("BASE", INT_MIN);
    const ZFileException file(picture, fileerr_rename);
    errno = ENOENT;
    const ZCrtErrorException crt(picture);
    const ZKVDException kvd("\xE9", wide("Wrong type"));
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
            EXPECT_NE(&raised, &exception) << id;
            EXPECT_STREQ(raised.inq_id(), id);
            EXPECT_EQ(raised.inq_code(), code) << id;
            EXPECT_EQ(plain(raised.describe()), description);
        }
    }
    EXPECT_EQ(crt.inq_file(), picture);
    EXPECT_EQ(file.inq_file(), picture);
    EXPECT_EQ(plain(ZKVDException("key", ZUString()).describe()), "Error with KVD key 'key': ");
    ZFileException nowhere(ZFileLocation(), fileerr_corrupt);
    using kind_t = std::pair<int, const char*>;
    for (const auto& [code, kind] :
         {kind_t{0, "Missing file: "}, kind_t{1, "Failed to open file for reading: "},
          kind_t{2, "Failed to open file for writing: "}, kind_t{3, "Corrupt data in file: "},
          kind_t{4, "Unknown error (id=4) with file: "}, kind_t{-1, "Unknown error (id=-1) with file: "}})
        EXPECT_EQ(plain(nowhere.set_code(code).describe()), std::string("ZFileException: ") + kind);
}

} // namespace
