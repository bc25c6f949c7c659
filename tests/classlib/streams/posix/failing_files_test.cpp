#include "classlib/streams/ZFileRStream.h"
#include "classlib/streams/ZFileWStream.h"
#include "tests/support/files_fixture.h"

#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <tuple>

namespace {

class failing_files_test : public files_fixture {};

TEST_F(failing_files_test, a_full_disk_is_noticed_at_the_latest_when_the_file_is_closed) {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit little{1000, limit.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    // Two writes, and whether they are taken: into the buffer, through it, and past it, where failures stick.
    for (const auto& [first, second, first_is_taken, second_is_taken] :
         {std::tuple(2000, 2000, true, true), {2000, 65000, true, false}, {100000, 1, false, false}}) {
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
    ZFileRStream in(ZFileLocation("\\proc\\self\\mem", false)); // nothing lies at its beginning
    EXPECT_EQ(in.inq_error(), rstreamerr_ok);
    EXPECT_EQ(in.get(), -1);
    EXPECT_EQ(in.inq_error(), rstreamerr_read_failed);
    EXPECT_EQ(errno, EIO);
}

} // namespace
