#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "classlib/errors/ZKVDException.h"
#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/errors/checks.h"
#include "tests/support/shown_text.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <tuple>
#include <typeinfo>

namespace {

TEST(errors, default_reporter_prints_what_happened_where_and_lets_the_operation_go_on) {
    const std::string heading = "Warning: Internal program error.  ";
    const std::string mild = heading + "Press Retry or Ignore to continue.\n";
    const std::string grave = heading +
                              "The program may crash or become unstable, so you are advised to quit and "
                              "restart.  Press Retry or Ignore to attempt to continue.\n";
    int n_evaluated = 0;
    testing::internal::CaptureStdout();
    ZASSERT(++n_evaluated == 1);
    ZASSERT(++n_evaluated == 1 && "never");
    ZWARNING(ZUString("'") << UTF16("a b") << "'.");
    const int last_line = __LINE__ - 1;
    EXPECT_FALSE(program_error("two\nlines", "ZE", INT_MIN) || program_error("", "ZE", -3));
    program_output("a\n b");
    program_output(ZUString());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              mild + "(Assertion failure at line " + std::to_string(last_line - 1) +
                  " in 'errors_test', ++n_evaluated == 1 && \"never\").\n" + mild + "(at line " +
                  std::to_string(last_line) + " in 'errors_test')\n\n'a b'.\n" + grave +
                  "(Error at line -2147483648 in 'ZE', two\nlines).\n" + grave +
                  "(Error at line -3 in 'ZE').\na\n b");
    EXPECT_EQ(n_evaluated, 2);
    EXPECT_STREQ(source_stem_t("C:\\work.old/Z.inl.h").text, "Z.inl");
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
    for (const std::string kind : {"Missing file", "Failed to open file for reading",
                                   "Failed to open file for writing", "Corrupt data in file"})
        EXPECT_EQ(plain(file.set_code(code++).describe()).find(kind + ": C:"), 16U);
}

} // namespace
