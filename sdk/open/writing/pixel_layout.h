#pragma once

#include "sdk/open/output_options.h"

#include <cstddef>
#include <cstdint>
#include <tiffio.h>

namespace sdk_open {

// How the pixels of a picture, 16 bits for each of three channels, lie in a TIFF.
struct pixel_layout {
    unsigned width;
    unsigned height;
    unsigned rows_per_strip; // the last strip may have fewer
    compression_t compression;

    // Of a whole strip, in samples.
    [[nodiscard]] std::size_t inq_strip_length() const noexcept;
};

// With strips of about 256 KiB before they are compressed.
[[nodiscard]] pixel_layout lay_out(unsigned width, unsigned height, compression_t compression) noexcept;

// The number that TIFF has for it.
[[nodiscard]] std::uint16_t tiff_scheme(compression_t compression) noexcept;

// Sets the tags that say so. False where libtiff refuses one.
[[nodiscard]] bool set_pixel_layout(TIFF* file, const pixel_layout& layout);

} // namespace sdk_open
