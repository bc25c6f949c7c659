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

const std::string heading = "Warning: Internal program error.  Press Retry or Ignore to continue.\n";
const std::string grave_heading = "Warning: Internal program error.  The program may crash or become "
                                  "unstable, so you are advised to quit and "
                                  "restart.  Press Retry or Ignore to attempt to continue.\n";

TEST(default_reporter, prints_each_report_and_asks_for_no_break) {
    using report_t = bool (*)(const ZUString& text, const char* file, int line);
    using row_t = std::tuple<report_t, const char*, const char*, int, std::string>;
    const row_t rows[] = {
        {&program_assertion_failure, "i >= 0 && i < m_n_elements", "ZStringArray", 147,
         heading + "(Assertion failure at line 147 in 'ZStringArray', i >= 0 && i < m_n_elements).\n"},
        {&program_warning, "Buffer too small", "ZWStream", 224,
         heading + "(at line 224 in 'ZWStream')\n\nBuffer too small\n"},
        {&program_warning, nullptr, "ZKVString", -5, heading + "(at line -5 in 'ZKVString')\n"},
        {&program_warning, "", "ZKV", 0, heading + "(at line 0 in 'ZKV')\n"},
        {&program_error, "two\nlines", "ZFile", INT_MIN,
         grave_heading + "(Error at line -2147483648 in 'ZFile', two\nlines).\n"},
        {&program_error, nullptr, "ZFile", 3, grave_heading + "(Error at line 3 in 'ZFile').\n"},
    };
    for (const auto& [report, text, file, line, want] : rows) {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(report(wide(text), file, line));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), want);
    }
    testing::internal::CaptureStdout();
    program_output(wide("a\n b"));
    program_output(ZUString());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\n b");
}

TEST(reporter, each_kind_of_report_reaches_the_current_one) {
    testing::internal::CaptureStdout();
    {
        const recording_reporter reporter;
        program_assertion_failure(wide("a < b"), "ZA", 1);
        program_warning(wide("w"), "ZW", 2);
        program_error(wide("e"), "ZE", 3);
        program_output(wide("o"));
        EXPECT_EQ(reporter.inq_reports(),
                  (std::vector<std::string>{"assertion 1 ZA: a < b", "warning 2 ZW: w", "error 3 ZE: e",
                                            "output 0 : o"}));
    }
    program_warning(ZUString(), "ZW", 4);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), heading + "(at line 4 in 'ZW')\n");
}

TEST(checks, report_their_place_and_let_the_operation_go_on) {
    recording_reporter reporter;
    int n_evaluated = 0;
    ZASSERT(++n_evaluated == 1);
    EXPECT_EQ(reporter.inq_reports().size(), 0U);
    const int line = __LINE__ + 1;
    ZASSERT(++n_evaluated == 1 && "never");
    ZWARNING(ZUString("Illegal keyname: '") << UTF16("a b") << "'.");
    EXPECT_EQ(n_evaluated, 2);
    EXPECT_EQ(reporter.inq_reports(),
              (std::vector<std::string>{
                  "assertion " + std::to_string(line) + " errors_test: ++n_evaluated == 1 && \"never\"",
                  "warning " + std::to_string(line + 1) + " errors_test: Illegal keyname: 'a b'."}));
}

TEST(checks, the_file_is_named_without_folders_and_extension) {
    EXPECT_STREQ(source_stem_t("classlib/strings/ZUString.cpp").text, "ZUString");
    EXPECT_STREQ(source_stem_t("C:\\work.old\\ZKV.cpp").text, "ZKV");
    EXPECT_STREQ(source_stem_t("../a.b/Makefile").text, "Makefile");
    EXPECT_STREQ(source_stem_t("Z.inl.h").text, "Z.inl");
}

ZFileLocation picture() {
    return {wide("C:\\Photos\\a.cr2"), false};
}

TEST(exceptions, a_file_exception_describes_its_code) {
    using row_t = std::pair<int, std::string>;
    const row_t rows[] = {{0, "Missing file: "},
                          {1, "Failed to open file for reading: "},
                          {2, "Failed to open file for writing: "},
                          {3, "Corrupt data in file: "},
                          {4, "Unknown error (id=4) with file: "},
                          {5, "Unknown error (id=5) with file: "},
                          {100, "Unknown error (id=100) with file: "},
                          {-1, "Unknown error (id=-1) with file: "}};
    for (const auto& [code, kind] : rows) {
        ZFileException exception(picture(), fileerr_corrupt);
        EXPECT_EQ(plain(exception.set_code(code).describe()),
                  "ZFileException: " + kind + "C:\\Photos\\a.cr2");
        ZFileException nowhere(ZFileLocation(), fileerr_corrupt);
        EXPECT_EQ(plain(nowhere.set_code(code).describe()), "ZFileException: " + kind);
    }
}

TEST(exceptions, are_described_and_raised_with_their_full_type) {
    const ZException base("BASE", INT_MIN);
    const ZFileException file(picture(), fileerr_rename);
    errno = ENOENT;
    const ZCrtErrorException crt(picture());
    const ZKVDException kvd("\xE9", wide("Wrong type"));
    struct row_t {
        const ZException& exception;
        const char* id;
        int code;
        std::string description;
    };
    const row_t rows[] = {
        {base, "BASE", INT_MIN, "ZException: BASE, -2147483648"},
        {file, "FILE", 5, "ZFileException: Unknown error (id=5) with file: C:\\Photos\\a.cr2"},
        {crt, "CRTERROR", ENOENT, std::string("ZCrtErrorException: ") + std::strerror(ENOENT)},
        {kvd, "ZKVD", 0, "Error with KVD key '<E9>': Wrong type"}};
    for (const row_t& row : rows) {
        try {
            row.exception.raise();
        } catch (const ZException& raised) {
            EXPECT_EQ(typeid(raised), typeid(row.exception)) << row.id;
            EXPECT_NE(&raised, &row.exception) << row.id;
            EXPECT_STREQ(raised.inq_id(), row.id);
            EXPECT_EQ(raised.inq_code(), row.code) << row.id;
            EXPECT_EQ(plain(raised.describe()), row.description);
        }
    }
    EXPECT_THROW(crt.raise(), ZCrtErrorException);
    EXPECT_EQ(crt.inq_file(), picture());
    EXPECT_EQ(file.inq_file(), picture());
    EXPECT_EQ(plain(ZKVDException("key", ZUString()).describe()), "Error with KVD key 'key': ");
}

} // namespace
