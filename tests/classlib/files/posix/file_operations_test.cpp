#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/files/ZFile.h"
#include "tests/support/files_fixture.h"
#include "tests/support/posix/without_privileges.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

class posix_file_operations : public files_fixture {
protected:
    // An operation that leaves a descriptor open would run the process of its host dry.
    void TearDown() override { EXPECT_EQ(count_descriptors(), m_n_descriptors); }

private:
    static std::ptrdiff_t count_descriptors() {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    }

    std::ptrdiff_t m_n_descriptors = count_descriptors();
};

TEST_F(posix_file_operations, a_link_at_the_target_is_replaced_not_followed) {
    write("a", "new");
    write("linked", "precious");
    fs::create_symlink(path("linked"), path("live"));
    fs::create_symlink(path("missing"), path("dangling"));
    fs::create_symlink(path("a"), path("self"));
    fs::create_hard_link(path("a"), path("hard"));
    for (const auto& [target, is_other] :
         {std::pair("live", true), {"dangling", true}, {"self", false}, {"hard", false}}) {
        EXPECT_EQ(ZFile(file("a")).copy_to(file(target)), is_other) << target;
        EXPECT_EQ(fs::is_symlink(path(target)), target == std::string("self"));
        EXPECT_EQ(read(target), "new");
    }
    EXPECT_EQ(list() + *read("linked"), "a dangling hard linked live self precious");
}

TEST_F(posix_file_operations, a_file_that_cannot_be_read_is_not_copied_and_keeps_nobody_waiting) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    const ZFileLocation unmapped("\\proc\\self\\mem", false); // its first page cannot be read
    for (const ZFileLocation& unreadable : {file("pipe"), unmapped}) {
        EXPECT_FALSE(ZFile(unreadable).copy_to(file("b")) || ZFile(unreadable).inq_same_contents(unreadable));
        EXPECT_EQ(list(), "pipe ");
    }
    EXPECT_FALSE(ZFile::inq_can_read(file("pipe")) || ZFile::inq_is_file(file("pipe")));
}

TEST_F(posix_file_operations, a_full_disk_leaves_no_copy) {
    write("a", std::string(100000, 'x')); // whose last block is the one that fits in part only
    const auto copy_with_little_room = [&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{90000, 90000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::_exit(ZFile(file("a")).copy_to(file("b")) ? 1 : 0);
    };
    EXPECT_EXIT(copy_with_little_room(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(list(), "a ");
}

TEST_F(posix_file_operations, permissions_are_respected) {
    make_folder("locked");
    for (const char* const name : {"secret", "readable", "locked/x"})
        write(name, "x");
    for (const auto& [name, bits] :
         {std::pair("..", 0755), {".", 0755}, {"secret", 0000}, {"readable", 0444}, {"locked", 0555}})
        fs::permissions(path(name), fs::perms(bits));
    {
        const without_privileges nobody;
        EXPECT_FALSE(ZFile::inq_can_read(file("secret")) || ZFile::inq_can_write(file("readable")));
        EXPECT_TRUE(ZFile::inq_can_read(file("readable")));
        EXPECT_FALSE(ZFile(file("secret")).copy_to(file("locked/x")));
        EXPECT_FALSE(ZFile(file("secret")).inq_same_contents(file("readable")));
        ZFile readable(file("readable"));
        EXPECT_FALSE(readable.copy_to(file("locked/y")) || readable.rename_to(file("locked/y")));
        EXPECT_FALSE(ZFile::delete_file(file("locked/x")));
        EXPECT_THROW(ZFile::create_folder(folder("locked/new")), ZCrtErrorException);
    }
    EXPECT_EQ(list() + *read("locked/x"), "locked readable secret x");
}

} // namespace
