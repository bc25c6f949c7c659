#include "platform/file_handle.h"

#include "platform/posix/native_path.h"
#include "platform/posix/uninterrupted.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {

file_handle file_handle::open_to_read(const utf16_t* path) noexcept {
    const native_path native(path);
    // Non-blocking, or a pipe without a writer would keep us here; it changes nothing for regular files.
    file_handle file(
        uninterrupted([&] { return ::open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    struct stat status {};
    if (file.is_open() && (::fstat(file.m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(std::exchange(file.m_descriptor, -1));
        errno = EACCES;
    }
    return file;
}

file_handle file_handle::create_to_write(const utf16_t* path) noexcept {
    const native_path native(path);
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    return file_handle(uninterrupted([&] { return ::open(native.c_str(), flags, S_IRUSR | S_IWUSR); }));
}

file_handle::file_handle(file_handle&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

file_handle::~file_handle() {
    if (is_open())
        ::close(m_descriptor);
}

std::int64_t file_handle::inq_size() const noexcept {
    struct stat status {};
    return ::fstat(m_descriptor, &status) == 0 ? status.st_size : -1;
}

std::ptrdiff_t file_handle::read(std::span<std::byte> target) noexcept {
    return uninterrupted([&] { return ::read(m_descriptor, target.data(), target.size()); });
}

bool file_handle::write(std::span<const std::byte> bytes) noexcept {
    while (!bytes.empty()) {
        const auto written = uninterrupted([&] { return ::write(m_descriptor, bytes.data(), bytes.size()); });
        if (written <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool file_handle::close() noexcept {
    return ::close(std::exchange(m_descriptor, -1)) == 0 || errno == EINTR;
}

} // namespace platform
