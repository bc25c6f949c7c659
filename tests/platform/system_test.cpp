#include "platform/clock.h"
#include "platform/file_handle.h"
#include "tests/support/files_fixture.h"
#include "tests/support/time_zone_setting.h"

#include <cerrno>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <tuple>

namespace {

TEST(clock, what_the_system_cannot_convert_is_all_zero) {
    const time_zone_setting zone("UTC0");
    const std::tm none = platform::to_local_time(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(none.tm_year, 0);
    EXPECT_EQ(none.tm_mday, 0);
}

class file_handle : public files_fixture {};

TEST_F(file_handle, only_regular_files_are_read_and_only_new_ones_created) {
    write("file", "abc");
    make_folder("folder");
    using row_t = std::tuple<const char*, int, int>;
    const row_t rows[] = {
        {"file", 0, EEXIST}, {"folder", EACCES, EEXIST}, {"new", ENOENT, 0}, {"no/new", ENOENT, ENOENT}};
    for (const auto& [name, read_error, create_error] : rows) {
        SCOPED_TRACE(name);
        const std::basic_string<utf16_t> native = path(name).string<utf16_t>();
        errno = 0;
        EXPECT_EQ(platform::file_handle::open_to_read(native.c_str()).is_open(), read_error == 0);
        EXPECT_EQ(errno, read_error);
        errno = 0;
        EXPECT_EQ(platform::file_handle::create_to_write(native.c_str()).is_open(), create_error == 0);
        EXPECT_EQ(errno, create_error);
    }
    EXPECT_EQ(read("file"), "abc");
}

} // namespace
