#include "platform/files.h"
#include "platform/posix/native_path.h"
#include "tests/support/scratch_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

bool makes_links;

} // namespace

// This process works on a file system that cannot spare the target of a renaming, and makes links when told
// to.
extern "C" {

int renameat2(int, const char*, int, const char*, unsigned) noexcept {
    errno = EINVAL;
    return -1;
}

int link(const char* file, const char* name) noexcept {
    if (makes_links)
        return ::linkat(AT_FDCWD, file, AT_FDCWD, name, 0);
    errno = EPERM;
    return -1;
}
}

namespace {

namespace fs = std::filesystem;

TEST(renaming, spares_an_existing_target_where_the_file_system_would_not) {
    const struct {
        const char* source;
        const char* target;
        int error;
        std::vector<std::string> left;
    } rows[] = {
        {"file", "new", 0, {"folder", "new", "nowhere", "other"}},
        {"file", "other", EEXIST, {"file", "folder", "nowhere", "other"}},
        {"file", "nowhere", EEXIST, {"file", "folder", "nowhere", "other"}}, // a link that leads there
        {"folder", "new", 0, {"file", "new", "nowhere", "other"}},
        {"folder", "other", EEXIST, {"file", "folder", "nowhere", "other"}},
        {"missing", "new", ENOENT, {"file", "folder", "nowhere", "other"}},
        {"file", "no folder/new", ENOENT, {"file", "folder", "nowhere", "other"}},
    };
    for (const bool has_links : {true, false})
        for (const auto& [source, target, error, left] : rows) {
            SCOPED_TRACE(std::string(source) + " -> " + target);
            const scratch_folder folder;
            const auto path_of = [&folder](const char* name) {
                return platform::library_path((folder.inq_path() / name).c_str());
            };
            makes_links = has_links;
            write_file(folder.inq_path() / "file", "file");
            write_file(folder.inq_path() / "other", "other");
            fs::create_directory(folder.inq_path() / "folder");
            fs::create_symlink("no such file", folder.inq_path() / "nowhere");
            const bool is_renamed = platform::rename_entry(path_of(source).c_str(), path_of(target).c_str());
            EXPECT_EQ(is_renamed ? 0 : errno, error);
            EXPECT_EQ(list_folder(folder.inq_path()), left);
            EXPECT_EQ(read_file(folder.inq_path() / "other"), "other");
        }
}

} // namespace
