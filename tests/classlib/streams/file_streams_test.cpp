#include "classlib/streams/ZData.h"
#include "classlib/streams/ZFileRStream.h"
#include "classlib/streams/ZFileWStream.h"
#include "classlib/strings/ZString.h"
#include "tests/support/files_fixture.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

class file_streams_test : public files_fixture {};

TEST_F(file_streams_test, bytes_come_back_as_they_were_written) {
    const std::vector<std::vector<int>> rows = {{0},           {65535, 1, 1},         {65536},
                                                {5, 65536, 5}, {40000, 40000, 40000}, {200000, 1}};
    for (const std::vector<int>& sizes : rows) {
        const std::string name = "file" + std::to_string(&sizes - rows.data());
        SCOPED_TRACE(name);
        std::string bytes(300000, '\0');
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<char>(i * 7 + i / 251); // tells where it stands
        ZFileWStream out(file(name));
        int n = 0;
        for (const int size : sizes) {
            EXPECT_TRUE(out.write_bytes(bytes.data() + n, size));
            n += size;
        }
        EXPECT_TRUE(out.close());
        const std::string written = bytes.substr(0, static_cast<std::size_t>(n));
        EXPECT_EQ(read(name), written);

        ZFileRStream in(file(name));
        EXPECT_EQ(in.inq_source_size(), n);
        ZData data;
        EXPECT_TRUE(in.read_all(data));
        EXPECT_EQ(bytes_of(data), written);
        EXPECT_EQ(in.inq_error(), rstreamerr_end_of_data);
    }
}

TEST_F(file_streams_test, what_cannot_be_opened_says_why) {
    write("existing", "abc");
    make_folder("folder");
    struct row_t {
        const char* name;
        int read_error; // 0 where it opens
        int create_error;
    };
    constexpr row_t rows[] = {{"existing", 0, EEXIST},
                              {"folder", EACCES, EEXIST},
                              {"missing/file", ENOENT, ENOENT},
                              {"missing", ENOENT, 0}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.name);
        errno = 0;
        ZFileRStream in(file(row.name));
        EXPECT_EQ(errno, row.read_error);
        EXPECT_EQ(in.inq_error(), row.read_error != 0 ? rstreamerr_read_failed : rstreamerr_ok);
        EXPECT_EQ(in.inq_source_size(), row.read_error != 0 ? -1 : 3);
        errno = 0;
        ZFileWStream out(file(row.name));
        EXPECT_EQ(errno, row.create_error);
        EXPECT_EQ(out.inq_ok(), row.create_error == 0);
        EXPECT_EQ(out.close(), row.create_error == 0);
    }
    EXPECT_EQ(read("existing"), "abc");
}

TEST_F(file_streams_test, closing_keeps_the_block_of_a_reader_and_ends_the_data) {
    write("file", std::string(65536 + 1, 'x'));
    ZFileRStream in(file("file"));
    EXPECT_EQ(in.get(), 'x');
    in.close();
    EXPECT_TRUE(in.skip(65535));
    EXPECT_EQ(in.get(), -1);
    EXPECT_EQ(in.inq_error(), rstreamerr_ok);
}

TEST_F(file_streams_test, a_writer_that_is_not_closed_leaves_out_what_it_holds) {
    {
        ZFileWStream out(file("file"));
        out << "held back";
    }
    EXPECT_EQ(read("file"), "");
}

TEST_F(file_streams_test, no_file_is_made_without_memory_for_its_stream) {
    const ZFileLocation location = file("file");
    for (int n = 1; runs_out_of_memory(n, [&] { ZFileWStream out(location); }); ++n)
        EXPECT_EQ(list(), "") << n;
    EXPECT_EQ(list(), "file ");
}

} // namespace
