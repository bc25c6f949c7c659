#include "sdk/open/system/input_file.h"

#include "sdk/open/failure.h"

#include <array>
#include <cerrno>
#include <cstdint>

namespace sdk_open {
namespace {

constexpr std::uint64_t largest_input = std::uint64_t{1} << 30; // bytes

bool says_no_such_file(int error_number) noexcept {
    constexpr std::array unreachable = {ENOENT, ENOTDIR, ENAMETOOLONG, ELOOP};
    for (const int number : unreachable)
        if (error_number == number)
            return true;
    return false;
}

[[noreturn]] void throw_cannot_open(int error_number) {
    const auto code =
        says_no_such_file(error_number) ? error_code_t::file_not_found : error_code_t::cannot_open_input;
    throw failure(code, "cannot open it: " + system_message(error_number));
}

[[noreturn]] void throw_cannot_read(int error_number) {
    throw failure(error_code_t::cannot_open_input, "cannot read it: " + system_message(error_number));
}

system_calls::file_status checked_status(const file_descriptor& file) {
    system_calls::file_status status;
    if (system_calls::status_of_open_file(file.inq(), status) != 0)
        throw_cannot_read(errno);
    return status;
}

} // namespace

input_file::input_file(const std::string& path) : m_file(system_calls::open_for_reading(path)) {
    if (!m_file.is_open())
        throw_cannot_open(errno);
    const system_calls::file_status status = checked_status(m_file);
    switch (status.kind) {
    case system_calls::file_kind_t::regular:
        m_identity = status.identity;
        return;
    case system_calls::file_kind_t::folder:
        throw failure(error_code_t::not_a_raw_picture, "it is a folder");
    default:
        throw failure(error_code_t::not_a_raw_picture, "it is not a regular file");
    }
}

// From the file's start on; answers how many bytes there were.
std::size_t input_file::fill(std::span<std::byte> target) const {
    std::size_t filled = 0;
    while (filled < target.size()) {
        const auto added = system_calls::read_some_at(m_file.inq(), filled, target.subspan(filled));
        if (added < 0)
            throw_cannot_read(errno);
        if (added == 0)
            break;
        filled += static_cast<std::size_t>(added);
    }
    return filled;
}

std::vector<std::byte> input_file::read_first(std::size_t count) const {
    std::vector<std::byte> contents(count);
    contents.resize(fill(contents));
    return contents;
}

large_block input_file::read_whole() const {
    const std::uint64_t size = checked_status(m_file).size;
    if (size == 0)
        throw failure(error_code_t::not_a_raw_picture, "the file is empty");
    if (size > largest_input)
        throw failure(error_code_t::not_supported, "the file is larger than 1 GiB");
    large_block contents(static_cast<std::size_t>(size));
    if (fill(contents.inq_bytes()) < size)
        throw failure(error_code_t::cannot_open_input, "the file became shorter while it was read");
    return contents;
}

} // namespace sdk_open
