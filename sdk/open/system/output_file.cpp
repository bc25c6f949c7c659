#include "sdk/open/system/output_file.h"

#include "sdk/open/failure.h"
#include "sdk/open/system/begun_file_name.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace sdk_open {
namespace {

// With its separator.
std::string folder_of(const std::string& path) {
    const std::size_t separator = path.rfind('/');
    return separator == std::string::npos ? "./" : path.substr(0, separator + 1);
}

// Random, so that nobody can put something of that name in the way beforehand.
std::string random_name(int& error_number) {
    std::array<std::byte, begun_file_digit_count> random{};
    error_number = system_calls::random_bytes(random) == 0 ? 0 : errno;
    std::string name(begun_file_prefix);
    for (const std::byte value : random)
        name += begun_file_digits[std::to_integer<std::size_t>(value) % begun_file_digits.size()];
    return name.append(begun_file_ending);
}

} // namespace

output_file::output_file(std::string path, const std::vector<system_calls::file_identity>& raw_files)
    : m_path(std::move(path)), m_raw_files(raw_files) {
    check_target();
    if (!system_calls::may_make_files_in(folder_of(m_path)))
        throw_errno();
}

output_file::~output_file() {
    if (!m_temporary_path.empty())
        system_calls::remove_file(m_temporary_path);
}

system_calls::file_status output_file::check_target() const {
    system_calls::file_status status;
    if (system_calls::status_of_path(m_path, status) != 0)
        throw_errno();
    switch (status.kind) {
    case system_calls::file_kind_t::missing:
        return status;
    case system_calls::file_kind_t::regular:
        if (std::ranges::find(m_raw_files, status.identity) != m_raw_files.end())
            throw_cannot_write("it is the raw file itself");
        if (!system_calls::may_write(m_path))
            throw_errno();
        return status;
    case system_calls::file_kind_t::folder:
        throw_errno(EISDIR);
    case system_calls::file_kind_t::other:
        break;
    }
    throw_cannot_write("not a regular file");
}

// Whoever tidies up may take the new file for an abandoned one before it is claimed.
void output_file::create_beside_target() {
    do
        create_claimed();
    while (system_calls::is_removed(m_file.inq()));
}

void output_file::create_claimed() {
    int error_number = 0;
    std::string temporary_path = folder_of(m_path) + random_name(error_number);
    if (error_number != 0)
        throw_errno(error_number);
    file_descriptor file(system_calls::create_new(temporary_path));
    if (!file.is_open())
        throw_errno();
    m_claim = file_descriptor(system_calls::claim(file.inq()));
    m_file = std::move(file);
    m_temporary_path = std::move(temporary_path);
}

void output_file::throw_cannot_write(const std::string& why) const {
    throw failure(error_code_t::cannot_write_output, "cannot write " + m_path + ": " + why);
}

void output_file::throw_errno() const {
    throw_errno(errno);
}

void output_file::throw_errno(int error_number) const {
    const error_code_t code = system_calls::says_full_disk(error_number) ? error_code_t::disk_full
                              : error_number == EEXIST                   ? error_code_t::output_appeared
                                                                         : error_code_t::cannot_write_output;
    throw failure(code, "cannot write " + m_path + ": " + system_message(error_number));
}

void output_file::write_at(std::uint64_t position, std::span<const std::byte> bytes) {
    if (m_temporary_path.empty())
        create_beside_target();
    while (!bytes.empty()) {
        const auto count = system_calls::write_some_at(m_file.inq(), position, bytes);
        if (count <= 0)
            throw_errno(count == 0 ? ENOSPC : errno);
        position += static_cast<std::uint64_t>(count);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

// Between the last look and the renaming a file may still change; one that appears is spared wherever the
// file system can.
void output_file::take_name(const expected_target_t& expected) const {
    const system_calls::file_status target = check_target();
    const bool is_missing = target.kind == system_calls::file_kind_t::missing;
    if (expected && !is_missing && target != *expected)
        throw_errno(EEXIST);
    const int result = expected && is_missing ? system_calls::rename_to_unused(m_temporary_path, m_path)
                                              : system_calls::rename_over(m_temporary_path, m_path);
    if (result != 0)
        throw_errno();
}

// A folder that may be written but not read cannot be flushed: there is none then.
file_descriptor output_file::open_folder() const {
    file_descriptor folder(system_calls::open_folder(folder_of(m_path)));
    if (!folder.is_open() && errno != EACCES)
        throw_errno();
    return folder;
}

void output_file::flush(const file_descriptor& folder) const {
    if (folder.is_open() && system_calls::flush_folder(folder.inq()) != 0)
        throw failure(error_code_t::cannot_write_output,
                      m_path + " is written, but may not outlast a crash: " + system_message(errno));
}

void output_file::commit(const expected_target_t& expected) {
    const file_descriptor folder = open_folder();
    if (system_calls::flush_to_medium(m_file.inq()) != 0 || m_file.close() != 0)
        throw_errno();
    take_name(expected);
    m_temporary_path.clear();
    flush(folder);
}

} // namespace sdk_open
