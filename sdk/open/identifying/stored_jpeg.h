#pragma once

#include "sdk/open/decoding/lossless_jpeg.h"

#include <cstddef>
#include <libraw/libraw.h>
#include <span>

namespace sdk_open {

// Reads the headers of the JPEG that LibRaw takes for the pixel data of the picture that it identified in
// these bytes. Throws what read_lossless_jpeg() does.
[[nodiscard]] lossless_jpeg read_stored_jpeg(std::span<const std::byte> bytes, LibRaw& identified,
                                             sampling_t sampling);

} // namespace sdk_open
