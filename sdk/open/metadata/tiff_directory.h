#pragma once

#include "sdk/open/metadata/metadata_field.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// The fields of a directory in a little-endian TIFF file, their values byte for byte (libtiff would take a
// rational such as 1/400 through a floating-point number, and 1/0 to nothing). Left out is what lies outside
// the file, has an unknown type or repeats a tag, and what exceeds 1000 entries or 1 MiB in all. Empty where
// there is no directory. Throws std::bad_alloc only.
[[nodiscard]] std::vector<metadata_field> read_tiff_directory(std::span<const std::byte> file,
                                                              std::size_t position);

// The bytes of such a directory, and of the values after it, for an even position in a file. No tag may occur
// twice. Their number is even. Throws std::bad_alloc only.
[[nodiscard]] std::vector<std::byte> make_tiff_directory(std::vector<metadata_field> fields,
                                                         std::uint32_t position);

} // namespace sdk_open
