#include "sdk/open/camera_frame.h"

#include <gtest/gtest.h>

#include <memory>
#include <tuple>

// The mosaic is 800 x 600; the decoder takes 700 x 500 at (50, 40) of it for the picture.
TEST(camera_frame, is_what_the_camera_records_where_that_is_possible) {
    constexpr sdk_open::mosaic_area decoders_own = {50, 40, 700, 500};
    const struct {
        std::tuple<int, int, int, int, int, int> camera; // width, height; left, top, right and bottom border
        sdk_open::mosaic_area frame;
        sdk_open::mosaic_area lit;
    } rows[] = {
        {{800, 600, 60, 50, 739, 529}, {60, 50, 680, 480}, decoders_own},
        {{800, 600, 49, 39, 799, 599}, {49, 39, 751, 561}, {49, 39, 751, 561}},
        {{400, 600, 60, 50, 339, 229}, decoders_own, decoders_own}, // of another mosaic
        {{800, 600, 60, 50, 800, 529}, decoders_own, decoders_own}, // one column too many
        {{800, 600, -1, 50, 739, 529}, decoders_own, decoders_own},
        {{800, 600, 60, 529, 739, 50}, decoders_own, decoders_own}, // upside down
    };
    for (const auto& row : rows) {
        const auto data = std::make_unique<libraw_data_t>();
        auto& sizes = data->sizes;
        auto& camera = data->makernotes.canon;
        std::tie(sizes.raw_width, sizes.raw_height, sizes.left_margin, sizes.top_margin, sizes.width,
                 sizes.height) = std::tuple(800, 600, 50, 40, 700, 500);
        std::tie(camera.SensorWidth, camera.SensorHeight, camera.SensorLeftBorder, camera.SensorTopBorder,
                 camera.SensorRightBorder, camera.SensorBottomBorder) = row.camera;
        EXPECT_EQ(sdk_open::find_camera_frame(*data), row.frame) << testing::PrintToString(row.camera);
        EXPECT_EQ(sdk_open::find_lit_area(*data), row.lit) << testing::PrintToString(row.camera);
    }
}
