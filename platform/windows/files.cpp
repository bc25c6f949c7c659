#include "platform/files.h"

#include "platform/windows/native_path.h"
#include "platform/windows/system_error.h"

#include <cerrno>
#include <cwchar>
#include <direct.h>
#include <io.h>
#include <optional>
#include <sys/stat.h>
#include <windows.h>

namespace platform {

namespace {

// An open file or folder, closed at the end of its life.
class open_entry final {
public:
    explicit open_entry(HANDLE handle) noexcept : m_handle(handle) {
        if (!is_open())
            keep_system_error();
    }
    open_entry(const open_entry&) = delete;
    open_entry& operator=(const open_entry&) = delete;
    ~open_entry() {
        if (is_open())
            ::CloseHandle(m_handle);
    }

    [[nodiscard]] bool is_open() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE inq_handle() const noexcept { return m_handle; }

private:
    HANDLE m_handle;
};

// What tells an entry from all others on the machine.
struct identity_t {
    DWORD volume;
    DWORD index_high;
    DWORD index_low;

    [[nodiscard]] bool operator==(const identity_t&) const = default;
};

std::optional<identity_t> inq_identity(const utf16_t* path) noexcept {
    constexpr DWORD shared_with_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    constexpr DWORD folders_too = FILE_FLAG_BACKUP_SEMANTICS;
    const open_entry entry(::CreateFileW(native_path(path).c_str(), 0, shared_with_all, nullptr,
                                         OPEN_EXISTING, folders_too, nullptr));
    BY_HANDLE_FILE_INFORMATION found{};
    if (!entry.is_open())
        return {};
    if (::GetFileInformationByHandle(entry.inq_handle(), &found) == 0) {
        keep_system_error();
        return {};
    }
    return identity_t{found.dwVolumeSerialNumber, found.nFileIndexHigh, found.nFileIndexLow};
}

// For paths that begin with "\\?\", in which the runtime's status call sees a wildcard.
entry_kind_t inq_kind_by_attributes(const native_path& path) noexcept {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        keep_system_error();
        return entry_kind_t::none;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? entry_kind_t::folder : entry_kind_t::file;
}

} // namespace

entry_kind_t inq_entry_kind(const utf16_t* path) noexcept {
    const native_path native(path);
    if (native.is_prefixed())
        return inq_kind_by_attributes(native);
    struct _stat64i32 status {};
    if (::_wstat64i32(native.c_str(), &status) != 0)
        return entry_kind_t::none;
    const auto type = status.st_mode & _S_IFMT;
    if (type == _S_IFDIR)
        return entry_kind_t::folder;
    return type == _S_IFREG ? entry_kind_t::file : entry_kind_t::other;
}

bool inq_same_entry(const utf16_t* path, const utf16_t* other) noexcept {
    const auto identity = inq_identity(path);
    return identity && identity == inq_identity(other);
}

bool delete_file(const utf16_t* path) noexcept {
    return ::_wunlink(native_path(path).c_str()) == 0;
}

bool rename_entry(const utf16_t* path, const utf16_t* target) noexcept {
    const native_path from(path);
    const native_path to(target);
    // The runtime finds nothing to do here, and calls that a success. Another letter case is a new name.
    if (from == to) {
        errno = EEXIST;
        return false;
    }
    return ::_wrename(from.c_str(), to.c_str()) == 0;
}

bool make_folder(const utf16_t* path) noexcept {
    return ::_wmkdir(native_path(path).c_str()) == 0;
}

bool inq_can_open_exclusively(const utf16_t* path, std::uint32_t access) noexcept {
    constexpr DWORD shared_with_none = 0;
    return open_entry(::CreateFileW(native_path(path).c_str(), access, shared_with_none, nullptr,
                                    OPEN_EXISTING, 0, nullptr))
        .is_open();
}

std::basic_string<utf16_t> inq_temporary_folder() {
    std::basic_string<utf16_t> folder(MAX_PATH, utf16_t(0));
    DWORD length = ::GetTempPathW(MAX_PATH, folder.data());
    if (length > folder.size()) { // the answer is then the size that it takes
        folder.resize(length);
        length = ::GetTempPathW(length, folder.data());
    }
    folder.resize(length);
    return folder;
}

} // namespace platform
