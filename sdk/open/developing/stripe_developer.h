#pragma once

#include "sdk/open/camera_frame.h"
#include "sdk/open/developing/picture_rows.h"
#include "sdk/open/developing/working_tone.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace sdk_open {

// Which colours an area has where, known from its upper left corner.
struct cfa_phase {
    bool is_green_first;   // at the corner
    bool is_red_row_first; // the other colour of the first row

    [[nodiscard]] bool is_green_odd(int row) const noexcept { return is_green_first == (row % 2 != 0); }
    [[nodiscard]] bool is_red_row(int row) const noexcept { return is_red_row_first == (row % 2 == 0); }
};

// What the developers of a picture share and only read.
struct development {
    std::span<const std::uint16_t> samples; // the whole mosaic, row by row
    std::size_t pitch;                      // samples of a row
    mosaic_area lit;   // what of the mosaic was exposed; beyond its edges it goes on mirrored
    cfa_phase phase;   // of the lit area
    tone_tables tones; // for positions counted from the lit area's corner
    std::array<std::array<float, 3>, 3> srgb_from_camera;
    std::span<const std::uint16_t> curve; // from linear light, 0 to 65535, to the coded value
};

// Where pixels go: three values from first on are the upper left pixel.
struct pixel_target {
    std::uint16_t* first;
    std::ptrdiff_t step_right; // in values
    std::ptrdiff_t step_down;
};

// Develops stripes of a mosaic, one row after the other, with a few rows of each intermediate plane in
// memory: they stay in the processor's cache.
class stripe_developer final {
public:
    static constexpr unsigned most_columns = 512;

    // How many rows of the mosaic below a row have to be there when it is developed.
    static constexpr unsigned rows_ahead = 11;

    // The development must outlive the developer. Throws std::bad_alloc.
    explicit stripe_developer(const development& shared);

    // Fills target with an area of the mosaic that lies in the lit one, at most most_columns wide.
    void develop(const mosaic_area& area, const pixel_target& target);

    // The rows of each plane, as the steps of demosaicing want them.
    struct planes_t {
        explicit planes_t(std::size_t row_size);

        picture_rows<16> tones;
        picture_rows<16> column_differences;
        picture_rows<8> row_differences;
        picture_rows<8> row_gradients;
        picture_rows<8> column_gradients;
        picture_rows<1> summed_row_gradients;
        picture_rows<8> left_weights;
        picture_rows<8> right_weights;
        picture_rows<8> above_weights;
        picture_rows<8> below_weights;
        picture_rows<8> differences;
        picture_rows<4> crossed_differences;
        picture_rows<4> red_differences;
        picture_rows<4> blue_differences;
    };

private:
    void load_row(int row, int left, int columns);
    void place_row(int columns, std::uint16_t* pixel, std::ptrdiff_t step_right) const noexcept;

    const development& m_shared;
    planes_t m_planes;
    std::array<std::array<std::uint16_t, most_columns + 64>, 3> m_light; // linear, of the row in work
};

} // namespace sdk_open
