#include "sdk/open/identifying/picture_size.h"

#include "sdk/open/failure.h"

namespace sdk_open {

std::uint64_t sample_count(const libraw_image_sizes_t& sizes) noexcept {
    return std::uint64_t{sizes.raw_width} * sizes.raw_height;
}

void check_size(const libraw_image_sizes_t& sizes, std::uint64_t most, std::size_t file_size,
                std::uint64_t samples_per_byte) {
    if (sample_count(sizes) > most)
        throw failure(error_code_t::not_supported, "the raw picture has more pixels than any camera makes");
    if (sample_count(sizes) > file_size * samples_per_byte)
        throw_damaged("the pixel data end early");
}

void check_borders(const libraw_image_sizes_t& sizes) {
    if (sizes.left_margin + sizes.width > sizes.raw_width ||
        sizes.top_margin + sizes.height > sizes.raw_height)
        throw_damaged("the picture reaches beyond the sensor");
}

} // namespace sdk_open
