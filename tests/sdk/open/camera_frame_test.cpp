#include "sdk/open/camera_frame.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

// The mosaic is 800 x 600; the decoder takes 700 x 500 at (50, 40) of it for the picture.
TEST(camera_frame, is_what_the_camera_records_where_that_is_possible) {
    struct row {
        short sensor_width;
        short borders[4]; // left, top, right, bottom
        sdk_open::mosaic_area frame;
        sdk_open::mosaic_area lit;
    };
    constexpr sdk_open::mosaic_area decoders_own = {50, 40, 700, 500};
    constexpr row rows[] = {
        {800, {60, 50, 739, 529}, {60, 50, 680, 480}, decoders_own},
        {800, {49, 39, 799, 599}, {49, 39, 751, 561}, {49, 39, 751, 561}},
        {400, {60, 50, 339, 229}, decoders_own, decoders_own}, // of another mosaic
        {800, {60, 50, 800, 529}, decoders_own, decoders_own}, // one column too many
        {800, {-1, 50, 739, 529}, decoders_own, decoders_own},
        {800, {60, 529, 739, 50}, decoders_own, decoders_own}, // upside down
    };
    for (const row& row : rows) {
        const auto data = std::make_unique<libraw_data_t>();
        auto& sizes = data->rawdata.sizes;
        sizes.raw_width = 800;
        sizes.raw_height = 600;
        sizes.left_margin = 50;
        sizes.top_margin = 40;
        sizes.width = 700;
        sizes.height = 500;
        auto& camera = data->makernotes.canon;
        camera.SensorWidth = row.sensor_width;
        camera.SensorHeight = 600;
        camera.SensorLeftBorder = row.borders[0];
        camera.SensorTopBorder = row.borders[1];
        camera.SensorRightBorder = row.borders[2];
        camera.SensorBottomBorder = row.borders[3];
        EXPECT_EQ(sdk_open::find_camera_frame(*data), row.frame) << row.borders[0] << ' ' << row.borders[2];
        EXPECT_EQ(sdk_open::find_lit_area(*data), row.lit) << row.borders[0] << ' ' << row.borders[2];
    }
}

} // namespace
