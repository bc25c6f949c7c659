#include "sdk/open/raw_decoder.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/tiff_picture.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>

namespace {

// FNV-1a over the samples, the low byte first.
std::uint64_t mosaic_checksum(const std::string& file) {
    const sdk_open::raw_decoder decoder(std::as_bytes(std::span(file)));
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const unsigned sample : decoder.inq_mosaic().samples)
        for (const unsigned byte : {sample & 0xffU, sample >> 8})
            sum = (sum ^ byte) * 0x100000001b3;
    return sum;
}

// The mean over the 24 patches of the colour chart, which takes the left half of the upper third of the
// scene. That starts 6 columns and 4 rows outside the picture's frame; a gap surrounds the chart.
double chart_difference(const tiff_picture& truth, const tiff_picture& picture, unsigned scene_width,
                        unsigned scene_height) {
    const unsigned gap = scene_height / 60;
    const unsigned width = (scene_width / 2 - 2 * gap) / 6;
    const unsigned height = (scene_height / 3 - 2 * gap) / 4;
    double sum = 0;
    for (unsigned patch = 0; patch < 24; ++patch)
        sum += colour_difference(truth, picture,
                                 {gap - 6 + patch % 6 * width + width / 4,
                                  gap - 4 + patch / 6 * height + height / 4, width / 2, height / 2});
    return sum / 24;
}

// The checksums were taken from the mosaics that the generator put into the files. The least PSNR is what
//   dcraw_emu -w -W -o 1 -g 2.4 12.92 -c 0 -q 3 -T -6
// reaches over the same part of the picture. For the sample with one component it takes a wrong white level;
// the figure is the one after correcting the brightness.
TEST(picture, equals_the_truth) {
    struct row {
        const char* name;
        const char* ending;
        std::uint64_t checksum;
        unsigned width;
        unsigned height;
        double least_psnr;
        unsigned scene_width; // 0 where the scene is turned
        unsigned scene_height;
    };
    constexpr row rows[] = {
        {"10d_12bit_low_bits", ".crw", 0x76fa8bf4d1b18f02, 720, 480, 30.41, 758, 488},
        {"40d_14bit_2comp_uneven_slices", ".cr2", 0xa073af2f3f9714f3, 720, 480, 30.32, 0, 0},
        {"5d2_14bit_4comp_3slices_portrait", ".cr2", 0x309576cc7bb3f647, 480, 720, 29.82, 0, 0},
        {"5d2_1comp", ".cr2", 0xba1ea92c02a5eabe, 400, 300, 29.42, 414, 308},
        {"5d3_14bit_2comp_no_slices", ".cr2", 0x9cd205c362792494, 640, 426, 29.48, 662, 434},
        {"5dsr_14bit_double_rows", ".cr2", 0xe40c7fec0e5e406e, 720, 480, 29.98, 742, 488},
        {"7d_14bit_4comp_fixed_huffman", ".cr2", 0xe5451a27390c4fb8, 426, 640, 30.05, 0, 0},
        {"d60_12bit_table2_portrait", ".crw", 0xcbf1d7d1ea5b5d15, 426, 640, 30.54, 0, 0},
    };
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    for (const row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto raw = sample(std::string(row.name) + row.ending);
        EXPECT_EQ(mosaic_checksum(read_file(raw)), row.checksum);
        const conversion_run run = convert(raw, tiff);
        ASSERT_EQ(run.code, eds_ok) << run.reason;
        EXPECT_EQ(run.reason, "");
        const tiff_picture truth = read_tiff(sample(std::string(row.name) + ".truth.tif"));
        const tiff_picture picture = read_tiff(tiff);
        ASSERT_EQ(picture.width, row.width);
        ASSERT_EQ(picture.height, row.height);
        const picture_figures figures = compare(truth, picture);
        EXPECT_GE(figures.psnr, row.least_psnr);
        EXPECT_NEAR(figures.gain, 1, 0.004); // which is 1 % of the light
        if (row.scene_width != 0) {
            EXPECT_LT(chart_difference(truth, picture, row.scene_width, row.scene_height), 0.002);
        }
    }
}

// The checksum is of what `unprocessed_raw` writes.
TEST(picture, of_a_real_camera_has_its_frame_and_the_same_bytes_every_time) {
    const scratch_folder folder;
    const auto first = folder.inq_path() / "first.tif";
    const auto second = folder.inq_path() / "second.tif";
    EXPECT_EQ(mosaic_checksum(read_file(real_sample())), 0x3ee0218629980008U);
    ASSERT_EQ(convert(real_sample(), first).code, eds_ok);
    ASSERT_EQ(convert(real_sample(), second).code, eds_ok);
    const tiff_picture picture = read_tiff(first);
    EXPECT_EQ(picture.width, 3504U);
    EXPECT_EQ(picture.height, 2336U);
    EXPECT_TRUE(read_file(first) == read_file(second));
}

} // namespace
