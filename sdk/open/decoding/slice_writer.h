#pragma once

#include "sdk/open/decoding/mosaic_buffer.h"

#include <cstdint>
#include <span>

namespace sdk_open {

// How a mosaic is cut from its top to its bottom: some slices of one width, and a last one. Widths in
// samples.
struct mosaic_slices {
    unsigned count; // besides the last; 0 where nothing is cut, whatever the widths
    unsigned width;
    unsigned last_width;
};

// Lays samples out in a mosaic whose slices are stored one after another, each row by row.
class slice_writer final {
public:
    // Throws failure(damaged_picture) where the slices are not as wide as the mosaic.
    slice_writer(const mosaic_slices& slices, const mosaic_buffer& mosaic);

    // Takes the next samples, at most as many as the mosaic has left.
    void write(std::span<const std::uint16_t> samples) noexcept;

    // How many rows from the top are complete.
    [[nodiscard]] unsigned inq_finished_rows() const noexcept;

private:
    mosaic_slices m_slices;
    mosaic_buffer m_mosaic;
    unsigned m_left = 0;  // of the slice that is being filled
    unsigned m_width = 0; // of that slice
    unsigned m_row = 0;
    unsigned m_column = 0; // in that slice
};

} // namespace sdk_open
