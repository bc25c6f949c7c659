#pragma once

#include "sdk/open/developing/development.h"
#include "sdk/open/developing/picture_rows.h"
#include "sdk/open/identifying/camera_frame.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace sdk_open {

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
        picture_rows<4> sorted_reds;
        picture_rows<4> sorted_blues;
    };

private:
    static constexpr int longest_vector = 64; // floats, of 2048 bits: a step may fill one more than it has to

    void load_row(int row, int left, int columns);
    void place_row(int columns, std::uint16_t* pixel, std::ptrdiff_t step_right) const noexcept;

    const development& m_shared;
    planes_t m_planes;

    // Linear, of the row in work.
    std::array<std::array<std::uint16_t, most_columns + longest_vector>, 3> m_light;
};

} // namespace sdk_open
