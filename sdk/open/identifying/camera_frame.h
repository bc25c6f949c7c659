#pragma once

#include <libraw/libraw.h>

namespace sdk_open {

// A rectangle of the mosaic, in samples from its upper left corner.
struct mosaic_area {
    unsigned left;
    unsigned top;
    unsigned width;
    unsigned height;

    [[nodiscard]] unsigned inq_right() const noexcept { return left + width; }
    [[nodiscard]] unsigned inq_bottom() const noexcept { return top + height; }
    [[nodiscard]] bool contains(const mosaic_area& other) const noexcept {
        return other.left >= left && other.top >= top && other.inq_right() <= inq_right() &&
               other.inq_bottom() <= inq_bottom();
    }
    [[nodiscard]] bool operator==(const mosaic_area&) const = default;
};

// What of the mosaic is the picture: the borders that the camera records for it (both ends belong to it), or
// the decoder's own idea where it records none or impossible ones. Where there is no mosaic, nothing but what
// the decoder takes for the picture is there.
[[nodiscard]] mosaic_area find_camera_frame(const libraw_data_t& data);

// What of the mosaic saw light: the camera's frame and what the decoder knows to lie around it. Developing
// all of it gives the frame's edge the neighbours that demosaicing wants.
[[nodiscard]] mosaic_area find_lit_area(const libraw_data_t& data);

// The colour of a place in a pattern of two columns and eight rows: the decoder's notation, with two bits for
// each. It counts 0 for red, 2 for blue, 1 and 3 for the greens of red and of blue rows.
[[nodiscard]] unsigned filter_at(unsigned filters, unsigned column, unsigned row) noexcept;

// The colour filters, in the decoder's notation, of an area whose corner lies somewhere else than the one
// they are given for: columns to the right and rows below it, either may be negative.
[[nodiscard]] unsigned move_filters(unsigned filters, int columns, int rows) noexcept;

} // namespace sdk_open
