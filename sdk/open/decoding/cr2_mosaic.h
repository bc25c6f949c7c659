#pragma once

#include "sdk/open/decoding/lossless_jpeg.h"
#include "sdk/open/decoding/mosaic_buffer.h"
#include "sdk/open/decoding/slice_writer.h"

namespace sdk_open {

// How a .cr2 stores its mosaic.
struct cr2_mosaic {
    lossless_jpeg jpeg; // of as many samples as the mosaic has
    mosaic_slices slices;
    unsigned lead; // this many samples come before the first row's first; as many are missing at the end

    [[nodiscard]] unsigned inq_precision() const noexcept { return jpeg.precision; }
};

// Decodes it with up to workers threads, the calling one among them. Throws failure(damaged_picture) where
// its parts contradict each other or the data are damaged, and std::bad_alloc.
void decode_mosaic(const cr2_mosaic& source, const mosaic_buffer& target, unsigned workers,
                   const rows_listener& on_rows);

} // namespace sdk_open
