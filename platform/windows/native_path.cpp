#include "platform/windows/native_path.h"

#include <string_view>
#include <windows.h>

namespace platform {

namespace {

using view_t = std::basic_string_view<utf16_t>;

constexpr view_t prefix = L"\\\\?\\";
constexpr view_t device_prefix = L"\\\\.\\";
constexpr view_t server_prefix = L"\\\\?\\UNC\\"; // takes the place of the two separators before a server

// A folder must leave room for a file with a name of the old short form, so its limit is below that of a
// file.
constexpr std::size_t max_length_without_prefix = MAX_PATH - 13;

} // namespace

native_path::native_path(const utf16_t* path) noexcept {
    if (path == nullptr || !complete(path))
        *inq_full() = utf16_t(0);
    const bool is_long = view_t(inq_full()).size() > max_length_without_prefix;
    m_path = is_long ? put_prefix() : *inq_full() != utf16_t(0) ? path : inq_full();
}

bool native_path::is_prefixed() const noexcept {
    return view_t(m_path).starts_with(prefix);
}

bool native_path::operator==(const native_path& other) const noexcept {
    return view_t(inq_full()) == view_t(other.inq_full());
}

// Writes the full path after the room for the prefix; false when it has none.
bool native_path::complete(const utf16_t* path) noexcept {
    const DWORD length = ::GetFullPathNameW(path, capacity, inq_full(), nullptr);
    return length > 0 && length < capacity;
}

// Answers where the prefixed path begins.
const utf16_t* native_path::put_prefix() noexcept {
    const view_t full(inq_full());
    if (full.starts_with(prefix) || full.starts_with(device_prefix))
        return inq_full();
    const bool is_on_server = full.starts_with(L"\\\\");
    const view_t added = is_on_server ? server_prefix : prefix;
    utf16_t* const begin = inq_full() + (is_on_server ? 2 : 0) - added.size();
    added.copy(begin, added.size());
    return begin;
}

} // namespace platform
