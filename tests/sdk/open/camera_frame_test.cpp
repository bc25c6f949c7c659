#include "sdk/open/camera_frame.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

using sdk_open::mosaic_area;

// A mosaic of 800 x 600, of which the decoder takes 700 x 500 at (50, 40) for the picture.
std::unique_ptr<libraw_data_t> decoded_data() {
    auto data = std::make_unique<libraw_data_t>();
    auto& sizes = data->rawdata.sizes;
    sizes.raw_width = 800;
    sizes.raw_height = 600;
    sizes.left_margin = 50;
    sizes.top_margin = 40;
    sizes.width = 700;
    sizes.height = 500;
    return data;
}

TEST(CameraFrame, IsWhatTheCameraRecordsWhereThatIsPossible) {
    struct row {
        short sensor[2];
        short borders[4]; // left, top, right, bottom
        mosaic_area frame;
        mosaic_area lit;
    };
    constexpr mosaic_area decoders_own = {50, 40, 700, 500};
    constexpr row rows[] = {
        {{800, 600}, {60, 50, 739, 529}, {60, 50, 680, 480}, decoders_own},
        {{800, 600}, {49, 39, 799, 599}, {49, 39, 751, 561}, {49, 39, 751, 561}},
        {{0, 0}, {0, 0, 0, 0}, decoders_own, decoders_own},
        {{400, 300}, {60, 50, 339, 229}, decoders_own, decoders_own}, // of another mosaic
        {{800, 600}, {60, 50, 800, 529}, decoders_own, decoders_own}, // one column too many
        {{800, 600}, {-1, 50, 739, 529}, decoders_own, decoders_own},
        {{800, 600}, {60, 529, 739, 50}, decoders_own, decoders_own}, // upside down
    };
    for (const row& row : rows) {
        const auto data = decoded_data();
        auto& camera = data->makernotes.canon;
        camera.SensorWidth = row.sensor[0];
        camera.SensorHeight = row.sensor[1];
        camera.SensorLeftBorder = row.borders[0];
        camera.SensorTopBorder = row.borders[1];
        camera.SensorRightBorder = row.borders[2];
        camera.SensorBottomBorder = row.borders[3];
        EXPECT_EQ(sdk_open::find_camera_frame(*data), row.frame) << row.borders[0] << ' ' << row.borders[2];
        EXPECT_EQ(sdk_open::find_lit_area(*data), row.lit) << row.borders[0] << ' ' << row.borders[2];
    }
}

TEST(CameraFrame, FiltersKeepTheirColoursWhereTheCornerMoves) {
    struct row {
        int columns;
        int rows;
        unsigned filters;
    };
    constexpr unsigned rggb = 0x94949494;
    constexpr row rows[] = {{0, 0, rggb},        {1, 0, 0x61616161},  {0, 1, 0x49494949}, {1, 1, 0x16161616},
                            {-1, 0, 0x61616161}, {0, -7, 0x49494949}, {10, -8, rggb}};
    for (const row& row : rows)
        EXPECT_EQ(sdk_open::move_filters(rggb, row.columns, row.rows), row.filters)
            << row.columns << ' ' << row.rows;
}

} // namespace
