#include "sdk/open/identifying/camera_frame.h"

#include <algorithm>

namespace sdk_open {
namespace {

mosaic_area visible_area(const libraw_image_sizes_t& sizes) noexcept {
    return {sizes.left_margin, sizes.top_margin, sizes.width, sizes.height};
}

// The filters of an area whose corner lies somewhere else than the one that they are given for: columns to
// the right and rows below it, either may be negative.
unsigned move_filters(unsigned filters, int columns, int rows) noexcept {
    const auto column_shift = static_cast<unsigned>(columns);
    const auto row_shift = static_cast<unsigned>(rows);
    unsigned moved = 0;
    for (unsigned row = 0; row < 8; ++row)
        for (unsigned column = 0; column < 2; ++column)
            moved |= filter_at(filters, column + column_shift, row + row_shift) << (row * 2 + column) * 2;
    return moved;
}

} // namespace

mosaic_area find_camera_frame(const libraw_data_t& data) {
    const libraw_image_sizes_t& sizes = data.sizes;
    const libraw_canon_makernotes_t& camera = data.makernotes.canon;
    constexpr int least_size = 64; // no camera's picture is smaller, and demosaicing wants some room
    const int left = camera.SensorLeftBorder;
    const int top = camera.SensorTopBorder;
    const int width = camera.SensorRightBorder - left + 1;
    const int height = camera.SensorBottomBorder - top + 1;
    const bool speaks_of_this_mosaic =
        camera.SensorWidth == sizes.raw_width && camera.SensorHeight == sizes.raw_height;
    const bool is_possible = left >= 0 && top >= 0 && width >= least_size && height >= least_size &&
                             left + width <= sizes.raw_width && top + height <= sizes.raw_height;
    const mosaic_area visible = visible_area(sizes);
    if (!speaks_of_this_mosaic || !is_possible)
        return visible;
    const mosaic_area recorded{static_cast<unsigned>(left), static_cast<unsigned>(top),
                               static_cast<unsigned>(width), static_cast<unsigned>(height)};
    return data.idata.filters != 0 || visible.contains(recorded) ? recorded : visible;
}

mosaic_area find_lit_area(const libraw_data_t& data) {
    const mosaic_area frame = find_camera_frame(data);
    const mosaic_area visible = visible_area(data.sizes);
    const unsigned left = std::min(frame.left, visible.left);
    const unsigned top = std::min(frame.top, visible.top);
    const unsigned right = std::max(frame.inq_right(), visible.inq_right());
    const unsigned bottom = std::max(frame.inq_bottom(), visible.inq_bottom());
    return {left, top, right - left, bottom - top};
}

unsigned filter_at(unsigned filters, unsigned column, unsigned row) noexcept {
    return filters >> ((row % 8 * 2 + column % 2) * 2) & 3U;
}

unsigned find_lit_filters(const libraw_data_t& data, const mosaic_area& lit) noexcept {
    return move_filters(data.idata.filters, static_cast<int>(lit.left) - data.sizes.left_margin,
                        static_cast<int>(lit.top) - data.sizes.top_margin);
}

} // namespace sdk_open
