#include "sdk/open/system/system_calls.h"

#include "platform/posix/uninterrupted.h"
#include "platform/posix/unused_name.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sdk_open::system_calls {
namespace {

using platform::uninterrupted;

std::uint64_t nanoseconds(const timespec& time) noexcept {
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(time.tv_nsec);
}

file_status described(const struct stat& found) noexcept {
    const file_identity identity{found.st_dev, found.st_ino};
    if (S_ISREG(found.st_mode))
        return {file_kind_t::regular, static_cast<std::uint64_t>(found.st_size), identity,
                nanoseconds(found.st_mtim)};
    return {S_ISDIR(found.st_mode) ? file_kind_t::folder : file_kind_t::other, 0, identity};
}

} // namespace

int open_for_reading(const std::string& path) noexcept {
    return uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); });
}

int create_new(const std::string& path) noexcept {
    constexpr mode_t as_umask_allows = 0666;
    return uninterrupted([&] {
        return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, as_umask_allows);
    });
}

// The lock belongs to the open file, so that the duplicate keeps it when the original is closed.
int claim(int descriptor) noexcept {
    if (uninterrupted([&] { return ::flock(descriptor, LOCK_EX); }) != 0)
        return -1;
    return ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
}

bool is_removed(int descriptor) noexcept {
    struct stat found {};
    return ::fstat(descriptor, &found) == 0 && found.st_nlink == 0;
}

int status_of_open_file(int descriptor, file_status& status) noexcept {
    struct stat found {};
    if (::fstat(descriptor, &found) != 0)
        return -1;
    status = described(found);
    return 0;
}

int status_of_path(const std::string& path, file_status& status) noexcept {
    struct stat found {};
    if (::lstat(path.c_str(), &found) == 0) {
        status = described(found);
        return 0;
    }
    if (errno != ENOENT)
        return -1;
    status = {};
    return 0;
}

bool may_write(const std::string& path) noexcept {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

bool may_make_files_in(const std::string& folder) noexcept {
    return ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::ptrdiff_t read_some_at(int descriptor, std::uint64_t position, std::span<std::byte> target) noexcept {
    return uninterrupted(
        [&] { return ::pread(descriptor, target.data(), target.size(), static_cast<off_t>(position)); });
}

std::ptrdiff_t write_some_at(int descriptor, std::uint64_t position,
                             std::span<const std::byte> source) noexcept {
    return uninterrupted(
        [&] { return ::pwrite(descriptor, source.data(), source.size(), static_cast<off_t>(position)); });
}

bool says_full_disk(int error_number) noexcept {
    return error_number == ENOSPC || error_number == EDQUOT;
}

int flush_to_medium(int descriptor) noexcept {
    return uninterrupted([&] { return ::fsync(descriptor); });
}

int open_folder(const std::string& path) noexcept {
    return uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
}

int flush_folder(int descriptor) noexcept {
    return flush_to_medium(descriptor) == 0 || errno == EINVAL ? 0 : -1;
}

int close_file(int descriptor) noexcept {
    return ::close(descriptor) == 0 || errno == EINTR ? 0 : -1;
}

int rename_over(const std::string& from, const std::string& to) noexcept {
    return ::rename(from.c_str(), to.c_str());
}

int rename_to_unused(const std::string& from, const std::string& to) noexcept {
    return platform::rename_to_unused(from.c_str(), to.c_str());
}

int remove_file(const std::string& path) noexcept {
    return ::unlink(path.c_str());
}

// The advice is for whole pages; those that lie wholly in the memory are enough, and none is no loss.
void prefer_large_pages(std::span<std::byte> memory) noexcept {
    constexpr std::size_t page = 4096;
    void* first = memory.data();
    std::size_t size = memory.size();
    if (std::align(page, page, first, size) != nullptr)
        ::madvise(first, size / page * page, MADV_HUGEPAGE);
}

int random_bytes(std::span<std::byte> target) noexcept {
    const auto count = uninterrupted([&] { return ::getrandom(target.data(), target.size(), 0); });
    return count == static_cast<std::ptrdiff_t>(target.size()) ? 0 : -1;
}

} // namespace sdk_open::system_calls
