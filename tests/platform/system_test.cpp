#include "platform/characters.h"
#include "platform/clock.h"
#include "platform/file_handle.h"
#include "platform/files.h"
#include "platform/number_text.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/time_zone_setting.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace {

TEST(characters, the_default_locale_knows_bytes_of_ascii_only) {
    using platform::is_space, platform::to_lower, platform::to_upper;
    for (int code = 0; code < 256; ++code) {
        const auto c = static_cast<char>(code);
        EXPECT_EQ(is_space(c), (code >= 9 && code <= 13) || code == 32) << code;
        EXPECT_EQ(to_upper(c), c >= 'a' && c <= 'z' ? static_cast<char>(code - 32) : c) << code;
        EXPECT_EQ(to_lower(c), c >= 'A' && c <= 'Z' ? static_cast<char>(code + 32) : c) << code;
    }
}

TEST(number_text, both_widths_read_alike) {
    struct row_t {
        const char* text;
        bool is_number;
        double want;
    };
    constexpr row_t rows[] = {
        {" \t-1.25e3,", true, -1250}, {".5", true, 0.5}, {"x", false, 0}, {"", false, 0}};
    for (const row_t& row : rows) {
        const std::string text(row.text);
        double value = 4711;
        EXPECT_EQ(platform::scan_double(row.text, value), row.is_number) << text;
        EXPECT_EQ(value, row.is_number ? row.want : 4711) << text;
        value = 4711;
        const std::basic_string<utf16_t> wide(text.begin(), text.end());
        EXPECT_EQ(platform::scan_double(wide.c_str(), value), row.is_number) << text;
        EXPECT_EQ(value, row.is_number ? row.want : 4711) << text;
    }
}

TEST(clock, what_the_system_cannot_convert_is_all_zero) {
    const time_zone_setting zone("UTC0");
    const std::tm none = platform::to_local_time(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(none.tm_year, 0);
    EXPECT_EQ(none.tm_mday, 0);
}

class file_handle_test : public testing::Test {
protected:
    std::basic_string<utf16_t> path(const char* name) const {
        return (m_folder.inq_path() / name).string<utf16_t>();
    }

    scratch_folder m_folder;
};

TEST_F(file_handle_test, only_regular_files_are_read_and_only_new_ones_created) {
    write_file(m_folder.inq_path() / "file", "abc");
    std::filesystem::create_directory(m_folder.inq_path() / "folder");
    struct row_t {
        const char* name;
        int read_error; // 0 where it opens
        int create_error;
    };
    constexpr row_t rows[] = {
        {"file", 0, EEXIST}, {"folder", EACCES, EEXIST}, {"new", ENOENT, 0}, {"no/new", ENOENT, ENOENT}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.name);
        errno = 0;
        EXPECT_EQ(platform::file_handle::open_to_read(path(row.name).c_str()).is_open(), row.read_error == 0);
        EXPECT_EQ(errno, row.read_error);
        errno = 0;
        EXPECT_EQ(platform::file_handle::create_to_write(path(row.name).c_str()).is_open(),
                  row.create_error == 0);
        EXPECT_EQ(errno, row.create_error);
    }
    EXPECT_EQ(read_file(m_folder.inq_path() / "file"), "abc");
}

TEST_F(file_handle_test, bytes_come_back_as_they_went) {
    const std::string written("\0\r\n\x1A\xFF", 5);
    platform::file_handle target = platform::file_handle::create_to_write(path("new").c_str());
    EXPECT_TRUE(target.write(std::as_bytes(std::span(written))));
    EXPECT_TRUE(target.close());
    EXPECT_FALSE(target.is_open());
    EXPECT_EQ(read_file(m_folder.inq_path() / "new"), written);

    platform::file_handle source = platform::file_handle::open_to_read(path("new").c_str());
    const platform::file_handle moved = std::move(source);
    EXPECT_TRUE(moved.is_open());
}

} // namespace
