#include "sdk/open/system/system_calls.h"

#include "platform/code_page.h"
#include "platform/windows/native_path.h"
#include "platform/windows/system_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <bcrypt.h> // after the header that it builds on

namespace sdk_open::system_calls {
namespace {

// A UTF-8 path as the system's calls take it; one that is too long becomes the empty path, which every call
// refuses.
class system_path final {
public:
    explicit system_path(const std::string& path) noexcept
        : m_native(platform::utf8_to_utf16(path.c_str(), m_text) > 0 ? m_text.data() : nullptr) {}

    [[nodiscard]] const utf16_t* c_str() const noexcept { return m_native.c_str(); }

private:
    std::array<utf16_t, 32768> m_text;
    platform::native_path m_native;
};

int failed() noexcept {
    platform::keep_system_error();
    return -1;
}

HANDLE handle_of(int descriptor) noexcept {
    return reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor)); // NOLINT(performance-no-int-to-ptr)
}

int describe(HANDLE file, file_status& status) noexcept {
    BY_HANDLE_FILE_INFORMATION found{};
    if (::GetFileInformationByHandle(file, &found) == 0)
        return failed();
    const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
    const file_identity identity{found.dwVolumeSerialNumber,
                                 joined(found.nFileIndexHigh, found.nFileIndexLow)};
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        status = {file_kind_t::other};
    else if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        status = {file_kind_t::folder, 0, identity};
    else
        status = {file_kind_t::regular, joined(found.nFileSizeHigh, found.nFileSizeLow), identity,
                  joined(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime)};
    return 0;
}

OVERLAPPED at(std::uint64_t position) noexcept {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(position);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}

// The number of bytes for one call.
DWORD count_of(std::size_t size) noexcept {
    constexpr std::size_t max_count = 1U << 30;
    return static_cast<DWORD>(std::min(size, max_count));
}

} // namespace

int open_for_reading(const std::string& path) noexcept {
    return ::_wopen(system_path(path).c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

int create_new(const std::string& path) noexcept {
    constexpr int flags = _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT;
    return ::_wopen(system_path(path).c_str(), flags, _S_IREAD | _S_IWRITE);
}

// Nobody can remove a file that is open.
int claim(int) noexcept {
    return -1;
}

bool is_removed(int) noexcept {
    return false;
}

int status_of_open_file(int descriptor, file_status& status) noexcept {
    auto* const file = handle_of(descriptor);
    if (::GetFileType(file) == FILE_TYPE_DISK)
        return describe(file, status);
    status = {file_kind_t::other};
    return 0;
}

int status_of_path(const std::string& path, file_status& status) noexcept {
    constexpr DWORD shared_with_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    constexpr DWORD the_entry_itself = FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS;
    auto* const entry = ::CreateFileW(system_path(path).c_str(), 0, shared_with_all, nullptr, OPEN_EXISTING,
                                      the_entry_itself, nullptr);
    if (entry != INVALID_HANDLE_VALUE) {
        const int result = describe(entry, status);
        ::CloseHandle(entry);
        return result;
    }
    status = {};
    platform::keep_system_error();
    return errno == ENOENT ? 0 : -1;
}

// Only the read-only mark is looked at. Whoever else may not write learns it on writing.
bool may_write(const std::string& path) noexcept {
    const DWORD attributes = ::GetFileAttributesW(system_path(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        platform::keep_system_error();
        return false;
    }
    errno = EACCES;
    return (attributes & FILE_ATTRIBUTE_READONLY) == 0;
}

bool may_make_files_in(const std::string& folder) noexcept {
    const DWORD attributes = ::GetFileAttributesW(system_path(folder).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        platform::keep_system_error();
        return false;
    }
    errno = ENOTDIR;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::ptrdiff_t read_some_at(int descriptor, std::uint64_t position, std::span<std::byte> target) noexcept {
    OVERLAPPED place = at(position);
    DWORD count = 0;
    if (::ReadFile(handle_of(descriptor), target.data(), count_of(target.size()), &count, &place) != 0)
        return static_cast<std::ptrdiff_t>(count);
    return ::GetLastError() == ERROR_HANDLE_EOF ? 0 : failed();
}

std::ptrdiff_t write_some_at(int descriptor, std::uint64_t position,
                             std::span<const std::byte> source) noexcept {
    OVERLAPPED place = at(position);
    DWORD count = 0;
    if (::WriteFile(handle_of(descriptor), source.data(), count_of(source.size()), &count, &place) == 0)
        return failed();
    return static_cast<std::ptrdiff_t>(count);
}

bool says_full_disk(int error_number) noexcept {
    return error_number == ENOSPC;
}

int flush_to_medium(int descriptor) noexcept {
    return ::_commit(descriptor);
}

// The renaming is on the medium when rename_over returns.
int open_folder(const std::string&) noexcept {
    errno = EACCES;
    return -1;
}

int flush_folder(int) noexcept {
    return 0;
}

int close_file(int descriptor) noexcept {
    return ::_close(descriptor);
}

int rename_over(const std::string& from, const std::string& to) noexcept {
    const system_path source(from);
    const system_path target(to);
    constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return ::MoveFileExW(source.c_str(), target.c_str(), flags) != 0 ? 0 : failed();
}

int rename_to_unused(const std::string& from, const std::string& to) noexcept {
    const system_path source(from);
    const system_path target(to);
    return ::MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0 ? 0 : failed();
}

int remove_file(const std::string& path) noexcept {
    return ::_wunlink(system_path(path).c_str());
}

// They take a right that hardly any user has.
void prefer_large_pages(std::span<std::byte>) noexcept {}

int random_bytes(std::span<std::byte> target) noexcept {
    auto* const bytes = reinterpret_cast<unsigned char*>(target.data());
    const auto status =
        ::BCryptGenRandom(nullptr, bytes, static_cast<ULONG>(target.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG);
    errno = EIO;
    return status == 0 ? 0 : -1;
}

} // namespace sdk_open::system_calls
