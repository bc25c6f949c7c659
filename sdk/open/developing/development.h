#pragma once

#include "sdk/open/developing/tone_tables.h"
#include "sdk/open/identifying/camera_frame.h"
#include "sdk/open/identifying/raw_decoder.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace sdk_open {

// Which colours an area has where, known from its upper left corner.
struct cfa_phase {
    bool is_green_first;   // at the corner
    bool is_red_row_first; // the other colour of the first row

    [[nodiscard]] bool is_green_odd(int row) const noexcept { return is_green_first == (row % 2 != 0); }
    [[nodiscard]] bool is_red_row(int row) const noexcept { return is_red_row_first == (row % 2 == 0); }
};

// All that turns a mosaic into colours: white balance as shot, no automatic brightening, clipped highlights
// neutral.
struct development {
    // Whether it can turn this picture into colours: a mosaic of red, green and blue. LibRaw must do the
    // others.
    [[nodiscard]] static bool is_for(const libraw_data_t& data);

    // Knows all but what becomes known while the mosaic is decoded. Throws failure(not_supported) where the
    // camera's colours are not known or its CFA is not one of red, green and blue, and std::bad_alloc.
    explicit development(const raw_decoder& decoder);

    // What is decoded, as far as it is there, with the levels that are known by now. Throws
    // failure(damaged_picture) where the file's levels or its white balance cannot be, and std::bad_alloc.
    void learn_mosaic(const raw_decoder& decoder);

    mosaic_area lit; // what of the mosaic was exposed; beyond its edges it goes on mirrored
    cfa_phase phase; // of the lit area
    std::array<std::array<float, 3>, 3> srgb_from_camera;
    std::vector<std::uint16_t> curve; // from linear light, 0 to 65535, to the coded value
    mosaic_view mosaic{};
    std::optional<tone_tables> tones; // for positions counted from the lit area's corner
};

} // namespace sdk_open
