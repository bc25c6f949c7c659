#include "classlib/files/ZFile.h"

#include "classlib/errors/ZCrtErrorException.h"
#include "classlib/errors/ZFileException.h"
#include "platform/file_handle.h"
#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <span>
#include <utility>

namespace {

constexpr std::size_t block_size = 65536;

// A block of block_size bytes to read into.
class block_t final {
public:
    block_t() : m_bytes(std::make_unique_for_overwrite<std::byte[]>(block_size)) {}

    [[nodiscard]] std::span<std::byte> all() const noexcept { return {m_bytes.get(), block_size}; }
    [[nodiscard]] std::span<const std::byte> first(std::ptrdiff_t n) const noexcept {
        return {m_bytes.get(), static_cast<std::size_t>(n)};
    }

private:
    std::unique_ptr<std::byte[]> m_bytes;
};

// No path is asked of the system when its text is empty: the answer is that of a missing entry.
bool is_no_path(const ZUString& path) noexcept {
    if (path.length() > 0)
        return false;
    errno = ENOENT;
    return true;
}

platform::entry_kind_t inq_kind(const ZUString& path) {
    return is_no_path(path) ? platform::entry_kind_t::none : platform::inq_entry_kind(path);
}

bool delete_path(const ZUString& path) {
    return !is_no_path(path) && platform::delete_file(path);
}

bool is_same_entry(const ZUString& path, const ZUString& other) {
    return !is_no_path(path) && !is_no_path(other) && platform::inq_same_entry(path, other);
}

// Copies until the source ends; false when a read or a write fails.
bool copy_bytes(platform::file_handle& source, platform::file_handle& target, const block_t& block) noexcept {
    std::ptrdiff_t n_read = source.read(block.all());
    while (n_read > 0) {
        if (!target.write(block.first(n_read)))
            return false;
        n_read = source.read(block.all());
    }
    return n_read == 0;
}

// Reads until the block is full or the file ends. Answers the number of bytes, -1 on failure.
std::ptrdiff_t read_block(platform::file_handle& file, const block_t& block) noexcept {
    std::size_t n_read = 0;
    while (n_read < block_size) {
        const std::ptrdiff_t n = file.read(block.all().subspan(n_read));
        if (n < 0)
            return -1;
        if (n == 0)
            break;
        n_read += static_cast<std::size_t>(n);
    }
    return static_cast<std::ptrdiff_t>(n_read);
}

} // namespace

bool ZFile::inq_exists(const ZFileLocation& location) {
    // A folder is asked for without its closing separator, which not every system accepts.
    const bool is_folder = location.inq_name().length() == 0;
    const ZUString path = is_folder ? location.inq_folder_path() : location.inq_path();
    return inq_kind(path) != platform::entry_kind_t::none;
}

bool ZFile::inq_is_folder(const ZFileLocation& location) {
    return inq_kind(location.inq_path()) == platform::entry_kind_t::folder;
}

bool ZFile::inq_is_file(const ZFileLocation& location) {
    return inq_kind(location.inq_path()) == platform::entry_kind_t::file;
}

bool ZFile::inq_can_read(const ZFileLocation& location) {
    return inq_can_open(location, platform::access_read);
}

bool ZFile::inq_can_write(const ZFileLocation& location) {
    return inq_can_open(location, platform::access_read | platform::access_write);
}

bool ZFile::inq_can_open(const ZFileLocation& location, std::uint32_t access) {
    const ZUString path = location.inq_path();
    return !is_no_path(path) && platform::inq_can_open_exclusively(path, access);
}

bool ZFile::delete_file(const ZFileLocation& location) {
    return delete_path(location.inq_path());
}

void ZFile::create_folder(const ZFileLocation& location) {
    ZUString path = location.inq_folder_path();
    if (path.inq_char(path.length() - 1) == u'\\')
        path = path.left(path.length() - 1);
    const ZFileLocation folder(path, false);
    if (location.inq_empty())
        throw ZFileException(folder, fileerr_no_location);

    switch (inq_kind(path)) {
    case platform::entry_kind_t::folder:
        return;
    case platform::entry_kind_t::none:
        break;
    default:
        static_cast<void>(delete_path(path));
    }
    if (is_no_path(path) || !platform::make_folder(path))
        throw ZCrtErrorException(folder);
}

bool ZFile::rename_to(const ZFileLocation& target) {
    const ZUString path = m_location.inq_path();
    const ZUString target_path = target.inq_path();
    ZFileLocation renamed = target; // copied first: once the file is renamed nothing may fail
    if (is_no_path(path) || is_no_path(target_path) || !platform::rename_entry(path, target_path))
        return false;
    m_location = std::move(renamed);
    return true;
}

bool ZFile::move_to(const ZFileLocation& target, bool overwrite) {
    if (overwrite && inq_exists(target) && !is_same_entry(m_location.inq_path(), target.inq_path()))
        static_cast<void>(delete_file(target));
    if (!rename_to(target))
        throw ZFileException(m_location, fileerr_rename);
    return true;
}

bool ZFile::copy_to(const ZFileLocation& target) const {
    const ZUString path = m_location.inq_path();
    const ZUString target_path = target.inq_path();
    if (is_same_entry(path, target_path)) {
        errno = EINVAL;
        return false;
    }
    const block_t block;
    static_cast<void>(delete_path(target_path));
    if (is_no_path(path) || is_no_path(target_path))
        return false;

    platform::file_handle source_file = platform::file_handle::open_to_read(path);
    if (!source_file.is_open())
        return false;
    platform::file_handle target_file = platform::file_handle::create_to_write(target_path);
    if (!target_file.is_open())
        return false;
    const bool is_copied = copy_bytes(source_file, target_file, block);
    const bool is_stored = target_file.close();
    if (!is_copied || !is_stored)
        static_cast<void>(delete_path(target_path));
    return is_copied && is_stored;
}

bool ZFile::inq_same_contents(const ZFileLocation& other) const {
    const ZUString path = m_location.inq_path();
    const ZUString other_path = other.inq_path();
    if (is_no_path(path) || is_no_path(other_path))
        return false;
    platform::file_handle file = platform::file_handle::open_to_read(path);
    if (!file.is_open())
        return false;
    platform::file_handle other_file = platform::file_handle::open_to_read(other_path);
    if (!other_file.is_open())
        return false;

    const block_t block;
    const block_t other_block;
    std::ptrdiff_t n_read = 0;
    do {
        n_read = read_block(file, block);
        if (n_read < 0 || n_read != read_block(other_file, other_block) ||
            !std::ranges::equal(block.first(n_read), other_block.first(n_read)))
            return false;
    } while (n_read == static_cast<std::ptrdiff_t>(block_size));
    return true;
}
