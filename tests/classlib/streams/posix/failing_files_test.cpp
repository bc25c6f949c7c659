#include "classlib/streams/ZData.h"
#include "classlib/streams/ZFileRStream.h"
#include "classlib/streams/ZFileWStream.h"
#include "tests/support/files_fixture.h"

#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <tuple>

namespace {

class failing_files_test : public files_fixture {};

TEST_F(failing_files_test, a_full_disk_is_noticed_at_the_latest_when_the_file_is_closed) {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit little{1000, limit.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    using row_t = std::tuple<int, int, bool, bool>; // two writes, and whether they are taken
    for (const auto& [first, second, first_is_taken, second_is_taken] :
         {row_t{2000, 2000, true, true},     // both are held until the end
          row_t{2000, 65000, true, false},   // the second makes room in the buffer
          row_t{100000, 1, false, false}}) { // goes past the buffer, and the failure sticks
        ::setrlimit(RLIMIT_FSIZE, &little);
        const std::string bytes(100000, 'x');
        ZFileWStream out(file(std::to_string(first + second)));
        EXPECT_EQ(out.write_bytes(bytes.data(), first), first_is_taken);
        EXPECT_EQ(out.write_bytes(bytes.data(), second), second_is_taken);
        EXPECT_EQ(out.inq_ok(), second_is_taken);
        EXPECT_FALSE(out.close());
        EXPECT_EQ(errno, EFBIG);
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
}

TEST_F(failing_files_test, a_failing_read_is_no_end_of_the_data) {
    ZFileRStream in(ZFileLocation("\\proc\\self\\mem", false)); // nothing lies at its beginning
    EXPECT_EQ(in.inq_error(), rstreamerr_ok);
    ZData data;
    EXPECT_FALSE(in.read_all(data));
    EXPECT_EQ(in.inq_error(), rstreamerr_read_failed);
    EXPECT_EQ(errno, EIO);
}

} // namespace
