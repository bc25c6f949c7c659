#pragma once

#include "sdk/open/decoding/mosaic_buffer.h"

#include <cstddef>
#include <span>

namespace sdk_open {

// How a .crw stores its mosaic: the upper ten bits of each sample in a code of the format's own, and for some
// cameras two more bits uncoded.
struct crw_mosaic {
    unsigned table;                      // which of the format's codes
    std::span<const std::byte> low_bits; // of four samples each, the first one's lowest; or empty
    std::span<const std::byte> codes;

    [[nodiscard]] unsigned inq_precision() const noexcept { return low_bits.empty() ? 10 : 12; }
};

// Finds the parts in the record with the pixel data, which must stay while the answer is in use. Throws
// failure(damaged_picture) where the record is too short for them.
[[nodiscard]] crw_mosaic read_crw_mosaic(std::span<const std::byte> record, unsigned table,
                                         std::size_t sample_count);

// Decodes it. Throws failure(damaged_picture) where the mosaic's size is impossible for the format or the
// data are damaged, and std::bad_alloc.
void decode_mosaic(const crw_mosaic& source, const mosaic_buffer& target, unsigned workers,
                   const rows_listener& on_rows);

} // namespace sdk_open
