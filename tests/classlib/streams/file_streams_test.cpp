#include "classlib/streams/ZFileRStream.h"
#include "classlib/streams/ZFileWStream.h"
#include "classlib/strings/ZString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/files_fixture.h"
#include "tests/support/shown_text.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

class file_streams_test : public files_fixture {};

TEST_F(file_streams_test, bytes_come_back_as_they_were_written) {
    std::string bytes(200001, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251); // tells where it stands
    const std::vector<int> rows[] = {{0}, {65535, 1, 1}, {65536}, {40000, 40000, 40000}, {200000, 1}};
    for (const std::vector<int>& sizes : rows) {
        const std::string name = "file" + std::to_string(&sizes - rows);
        ZFileWStream out(file(name));
        std::size_t n = 0;
        for (const int size : sizes) {
            EXPECT_TRUE(out.write_bytes(bytes.data() + n, size));
            n += static_cast<std::size_t>(size);
        }
        EXPECT_TRUE(out.close());
        EXPECT_TRUE(read(name) == bytes.substr(0, n)) << name;

        ZFileRStream in(file(name));
        EXPECT_EQ(in.inq_source_size(), static_cast<int>(n));
        ZData data;
        EXPECT_TRUE(in.read_all(data));
        EXPECT_TRUE(bytes_of(data) == bytes.substr(0, n)) << name;
    }
}

TEST_F(file_streams_test, what_cannot_be_opened_says_why) {
    write("existing", "abc");
    make_folder("folder");
    using row_t = std::tuple<const char*, int, int>; // the two causes, 0 where it opens
    for (const auto& [name, read_error, create_error] : {row_t{"existing", 0, EEXIST},
                                                         {"folder", EACCES, EEXIST},
                                                         {"no/file", ENOENT, ENOENT},
                                                         {"new", ENOENT, 0}}) {
        SCOPED_TRACE(name);
        errno = 0;
        const ZFileRStream in(file(name));
        EXPECT_EQ(errno, read_error);
        EXPECT_EQ(in.inq_error(), read_error != 0 ? rstreamerr_read_failed : rstreamerr_ok);
        EXPECT_EQ(in.inq_source_size(), read_error != 0 ? -1 : 3);
        errno = 0;
        ZFileWStream out(file(name));
        EXPECT_EQ(errno, create_error);
        EXPECT_EQ(out.inq_ok() && out.close(), create_error == 0);
    }
    EXPECT_EQ(read("existing"), "abc");
}

TEST_F(file_streams_test, closing_ends_a_reader_behind_its_block_and_completes_what_was_written) {
    write("long", std::string(65536 + 1, 'x'));
    ZFileRStream in(file("long"));
    EXPECT_EQ(in.get(), 'x');
    in.close();
    EXPECT_TRUE(in.skip(65535));
    EXPECT_EQ(in.get(), -1);
    EXPECT_EQ(in.inq_error(), rstreamerr_ok);
    ZFileWStream(file("unclosed")) << "held back";
    EXPECT_EQ(read("unclosed"), "");
    for (int n = 1; runs_out_of_memory(n, [&] { ZFileWStream out(file("new")); }); ++n)
        EXPECT_EQ(list(), "long unclosed ") << n;
}

} // namespace
