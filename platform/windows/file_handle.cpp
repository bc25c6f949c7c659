#include "platform/file_handle.h"

#include "platform/windows/native_path.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <utility>

namespace platform {

namespace {

// The runtime takes calls with an invalid descriptor for a mistake that may end the process.
bool check_open(int descriptor) noexcept {
    if (descriptor < 0)
        errno = EBADF;
    return descriptor >= 0;
}

// The number of bytes for one call of the runtime, which takes an int's worth at most.
unsigned int count_of(std::size_t size) noexcept {
    constexpr std::size_t max_count = 1U << 30;
    return static_cast<unsigned int>(std::min(size, max_count));
}

bool is_regular(int descriptor) noexcept {
    struct _stat64 status {};
    return ::_fstat64(descriptor, &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFREG;
}

} // namespace

// Both keep the file from programs that the host starts: without _O_NOINHERIT they would hold it open.

file_handle file_handle::open_to_read(const utf16_t* path) noexcept {
    const native_path native(path);
    file_handle file(::_wopen(native.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT));
    if (file.is_open() && !is_regular(file.m_descriptor)) {
        ::_close(std::exchange(file.m_descriptor, -1));
        errno = EACCES;
    }
    return file;
}

file_handle file_handle::create_to_write(const utf16_t* path) noexcept {
    const native_path native(path);
    constexpr int flags = _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT;
    return file_handle(::_wopen(native.c_str(), flags, _S_IWRITE));
}

file_handle::file_handle(file_handle&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

file_handle::~file_handle() {
    if (is_open())
        ::_close(m_descriptor);
}

std::int64_t file_handle::inq_size() const noexcept {
    return check_open(m_descriptor) ? ::_filelengthi64(m_descriptor) : -1;
}

std::ptrdiff_t file_handle::read(std::span<std::byte> target) noexcept {
    return check_open(m_descriptor) ? ::_read(m_descriptor, target.data(), count_of(target.size())) : -1;
}

bool file_handle::write(std::span<const std::byte> bytes) noexcept {
    while (!bytes.empty()) {
        if (!check_open(m_descriptor))
            return false;
        const int written = ::_write(m_descriptor, bytes.data(), count_of(bytes.size()));
        if (written <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool file_handle::close() noexcept {
    return check_open(m_descriptor) && ::_close(std::exchange(m_descriptor, -1)) == 0;
}

} // namespace platform
