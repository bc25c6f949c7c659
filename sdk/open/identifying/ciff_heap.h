#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace sdk_open {

// A stretch of a file, in bytes from its start.
struct byte_range {
    std::size_t first;
    std::size_t end; // one past the last
};

// Where the record with the mosaic lies in a .crw; nothing where the directory at the file's end is cut off
// or names no such record.
[[nodiscard]] std::optional<byte_range> find_ciff_raw_data(std::span<const std::byte> bytes);

} // namespace sdk_open
