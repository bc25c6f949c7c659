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
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

// What an action prints on standard output.
std::string printed_by(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

const std::string heading = "Warning: Internal program error.  Press Retry or Ignore to continue.\n";
const std::string grave_heading = "Warning: Internal program error.  The program may crash or become "
                                  "unstable, so you are advised to quit and "
                                  "restart.  Press Retry or Ignore to attempt to continue.\n";

TEST(default_reporter, prints_each_report_and_asks_for_no_break) {
    struct row_t {
        bool (*report)(const ZUString& text, const char* file, int line);
        const char* text;
        const char* file;
        int line;
        std::string want;
    };
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
    for (const row_t& row : rows) {
        bool asks_for_break = true;
        EXPECT_EQ(printed_by([&] { asks_for_break = row.report(wide(row.text), row.file, row.line); }),
                  row.want);
        EXPECT_FALSE(asks_for_break);
    }
    EXPECT_EQ(printed_by([] { program_output(wide("a\n b")); }), "a\n b");
    EXPECT_EQ(printed_by([] { program_output(ZUString()); }), "");
}

TEST(reporter, each_kind_of_report_reaches_the_current_one) {
    {
        recording_reporter reporter;
        EXPECT_EQ(printed_by([] {
                      program_assertion_failure(wide("a < b"), "ZA", 1);
                      program_warning(wide("w"), "ZW", 2);
                      program_error(wide("e"), "ZE", 3);
                      program_output(wide("o"));
                  }),
                  "");
        EXPECT_EQ(reporter.inq_reports(),
                  (std::vector<std::string>{"assertion 1 ZA: a < b", "warning 2 ZW: w", "error 3 ZE: e",
                                            "output 0 : o"}));
    }
    EXPECT_EQ(printed_by([] { program_warning(ZUString(), "ZW", 4); }), heading + "(at line 4 in 'ZW')\n");
}

TEST(reporter, one_that_shows_reports_in_its_own_way_gets_the_same_texts) {
    class shower final : public ZProgramErrorOutput {
    public:
        bool show_report(const ZUString& report) override {
            m_report = plain(report);
            return true;
        }
        std::string m_report;
    };
    shower reporter;
    set_program_error_output(&reporter);
    EXPECT_TRUE(program_warning(wide("w"), "ZW", 2));
    EXPECT_EQ(reporter.m_report, plain(wide((heading + "(at line 2 in 'ZW')\n\nw").c_str())));
    EXPECT_TRUE(program_error(wide("e"), "ZE", 3));
    EXPECT_TRUE(program_assertion_failure(wide("a"), "ZA", 1));
    EXPECT_TRUE(reporter.m_report.ends_with("(Assertion failure at line 1 in 'ZA', a)."));
    set_program_error_output(nullptr);
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

ZCrtErrorException crt_error(int code) {
    errno = code;
    return ZCrtErrorException(picture());
}

TEST(exceptions, describe_themselves) {
    struct row_t {
        const ZException& exception;
        std::string want;
    };
    const row_t rows[] = {
        {ZException("FILE", 4), "ZException: FILE, 4"},
        {ZException("KV", INT_MIN), "ZException: KV, -2147483648"},
        {crt_error(EEXIST), std::string("ZCrtErrorException: ") + std::strerror(EEXIST)},
        {ZKVDException("width", wide("Wrong type")), "Error with KVD key 'width': Wrong type"},
        {ZKVDException("\xE9", ZUString()), "Error with KVD key '<E9>': "},
    };
    for (const row_t& row : rows)
        EXPECT_EQ(plain(row.exception.describe()), row.want);
}

TEST(exceptions, a_file_exception_describes_its_code) {
    struct row_t {
        int code;
        std::string kind;
    };
    const row_t rows[] = {{0, "Missing file: "},
                          {1, "Failed to open file for reading: "},
                          {2, "Failed to open file for writing: "},
                          {3, "Corrupt data in file: "},
                          {4, "Unknown error (id=4) with file: "},
                          {5, "Unknown error (id=5) with file: "},
                          {100, "Unknown error (id=100) with file: "},
                          {-1, "Unknown error (id=-1) with file: "}};
    for (const row_t& row : rows) {
        ZFileException with_path(picture(), fileerr_corrupt);
        EXPECT_EQ(plain(with_path.set_code(row.code).describe()),
                  "ZFileException: " + row.kind + "C:\\Photos\\a.cr2");
        ZFileException without_path(ZFileLocation(), fileerr_corrupt);
        EXPECT_EQ(plain(without_path.set_code(row.code).describe()), "ZFileException: " + row.kind);
    }
    EXPECT_EQ(ZFileException(picture(), fileerr_rename).inq_code(), 5);
}

TEST(exceptions, are_raised_with_their_full_type) {
    const ZException base("BASE", 3);
    const ZFileException file(picture(), fileerr_rename);
    const ZCrtErrorException crt = crt_error(ENOENT);
    const ZKVDException kvd("width", wide("wrong"));
    struct row_t {
        const ZException& exception;
        const char* id;
        int code;
    };
    const row_t rows[] = {{base, "BASE", 3}, {file, "FILE", 5}, {crt, "CRTERROR", ENOENT}, {kvd, "ZKVD", 0}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.id);
        EXPECT_STREQ(row.exception.inq_id(), row.id);
        EXPECT_EQ(row.exception.inq_code(), row.code);
        try {
            row.exception.raise();
        } catch (const ZException& raised) {
            EXPECT_EQ(typeid(raised), typeid(row.exception));
            EXPECT_NE(&raised, &row.exception);
            EXPECT_EQ(raised.inq_id(), row.exception.inq_id()); // the very same text
            EXPECT_EQ(raised.inq_code(), row.code);
            EXPECT_EQ(plain(raised.describe()), plain(row.exception.describe()));
        }
    }
    EXPECT_THROW(file.raise(), ZFileException);
    EXPECT_EQ(file.inq_file(), picture());
    EXPECT_EQ(crt.inq_file(), picture());
    EXPECT_EQ(plain(kvd.inq_key()) + ": " + plain(kvd.inq_message()), "width: wrong");
}

} // namespace
