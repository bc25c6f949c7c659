#pragma once

#include <cstddef>
#include <cstdint>
#include <libraw/libraw.h>

namespace sdk_open {

// Of the whole sensor: one for each of its pixels.
[[nodiscard]] std::uint64_t sample_count(const libraw_image_sizes_t& sizes) noexcept;

// A tiny file may not ask for gigabytes. However well the picture is compressed, a byte holds no more
// samples. Throws failure where it would have to, or there are more than most.
void check_size(const libraw_image_sizes_t& sizes, std::uint64_t most, std::size_t file_size,
                std::uint64_t samples_per_byte);

// LibRaw believes the borders that a camera of a model that it does not know records. Throws failure where
// they cannot be.
void check_borders(const libraw_image_sizes_t& sizes);

} // namespace sdk_open
