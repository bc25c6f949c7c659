#include "classlib/files/ZFileLocation.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZFileRStream.h"
#include "classlib/streams/ZFileWStream.h"
#include "tests/support/files_fixture.h"
#include "tests/support/shown_text.h"

#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>

namespace {

// No file of the process gets longer than this, as on a disk that is full.
class file_size_limit final {
public:
    explicit file_size_limit(rlim_t limit) : m_old_action(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_old_limit);
        rlimit limited = m_old_limit;
        limited.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    file_size_limit(const file_size_limit&) = delete;
    file_size_limit& operator=(const file_size_limit&) = delete;
    ~file_size_limit() {
        setrlimit(RLIMIT_FSIZE, &m_old_limit);
        std::signal(SIGXFSZ, m_old_action);
    }

private:
    rlimit m_old_limit{};
    void (*m_old_action)(int);
};

class failing_files_test : public files_fixture {};

TEST_F(failing_files_test, a_full_disk_is_noticed_at_the_latest_when_the_file_is_closed) {
    struct row_t {
        int first;
        int second;
        bool first_is_taken;
        bool second_is_taken;
    };
    constexpr row_t rows[] = {{2000, 2000, true, true},   // both are held until the end
                              {2000, 65000, true, false}, // the second makes room in the buffer
                              {100000, 1, false, false}}; // goes past the buffer, and the failure sticks
    for (const row_t& row : rows) {
        const std::string name = std::to_string(row.first + row.second);
        const std::string bytes(100000, 'x');
        const file_size_limit limit(1000);
        ZFileWStream out(file(name));
        errno = 0;
        EXPECT_EQ(out.write_bytes(bytes.data(), row.first), row.first_is_taken);
        EXPECT_EQ(out.write_bytes(bytes.data(), row.second), row.second_is_taken);
        EXPECT_EQ(out.inq_ok(), row.second_is_taken);
        EXPECT_FALSE(out.close());
        EXPECT_EQ(errno, EFBIG);
    }
}

TEST_F(failing_files_test, a_failing_read_is_no_end_of_the_data) {
    ZFileRStream in(ZFileLocation(wide("\\proc\\self\\mem"), false)); // nothing lies at its beginning
    EXPECT_EQ(in.inq_error(), rstreamerr_ok);
    errno = 0;
    ZData data;
    EXPECT_FALSE(in.read_all(data));
    EXPECT_EQ(in.inq_error(), rstreamerr_read_failed);
    EXPECT_EQ(errno, EIO);
}

} // namespace
