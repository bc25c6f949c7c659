#include "sdk/open/raw_decoder.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/picture_comparison.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace {

// FNV-1a over the samples, the low byte first.
std::uint64_t checksum(const sdk_open::mosaic_view& mosaic) {
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const unsigned sample : mosaic.samples)
        for (const unsigned byte : {sample & 0xffU, sample >> 8})
            sum = (sum ^ byte) * 0x100000001b3;
    return sum;
}

// The checksums were taken from the mosaics that the generator put into the files, the real picture's from
// what `unprocessed_raw` writes.
TEST(Picture, MosaicIsDecodedExactly) {
    struct row {
        std::filesystem::path file;
        std::uint64_t checksum;
    };
    const row rows[] = {
        {sample("10d_12bit_low_bits.crw"), 0x76fa8bf4d1b18f02},
        {sample("40d_14bit_2comp_uneven_slices.cr2"), 0xa073af2f3f9714f3},
        {sample("5d2_14bit_4comp_3slices_portrait.cr2"), 0x309576cc7bb3f647},
        {sample("5d2_1comp.cr2"), 0xba1ea92c02a5eabe},
        {sample("5d3_14bit_2comp_no_slices.cr2"), 0x9cd205c362792494},
        {sample("5dsr_14bit_double_rows.cr2"), 0xe40c7fec0e5e406e},
        {sample("7d_14bit_4comp_fixed_huffman.cr2"), 0xe5451a27390c4fb8},
        {sample("d60_12bit_table2_portrait.crw"), 0xcbf1d7d1ea5b5d15},
        {real_sample(), 0x3ee0218629980008},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.file);
        const sdk_open::raw_decoder decoder(bytes_of(read_file(row.file)));
        EXPECT_EQ(checksum(decoder.inq_mosaic()), row.checksum);
    }
}

// The least PSNR is what dcraw_emu reaches with
//   dcraw_emu -w -W -o 1 -g 2.4 12.92 -c 0 -q 3 -T -6
// over the same part of the picture. For the sample with one component it takes a wrong white level; the
// figure is the one after correcting the brightness.
TEST(Picture, EqualsTheTruth) {
    struct row {
        const char* file;
        unsigned width;
        unsigned height;
        double least_psnr;
    };
    constexpr row rows[] = {
        {"10d_12bit_low_bits.crw", 720, 480, 30.41},
        {"40d_14bit_2comp_uneven_slices.cr2", 720, 480, 30.32}, // upside down
        {"5d2_14bit_4comp_3slices_portrait.cr2", 480, 720, 29.82},
        {"5d2_1comp.cr2", 400, 300, 29.42},
        {"5d3_14bit_2comp_no_slices.cr2", 640, 426, 29.48},
        {"5dsr_14bit_double_rows.cr2", 720, 480, 29.98},
        {"7d_14bit_4comp_fixed_huffman.cr2", 426, 640, 30.05},
        {"d60_12bit_table2_portrait.crw", 426, 640, 30.54},
    };
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    for (const row& row : rows) {
        SCOPED_TRACE(row.file);
        const conversion_run run = convert(sample(row.file), tiff);
        ASSERT_EQ(run.code, eds_ok) << run.reason;
        EXPECT_EQ(run.reason, "");
        const tiff_picture picture = read_tiff(tiff);
        ASSERT_EQ(picture.width, row.width);
        ASSERT_EQ(picture.height, row.height);
        const picture_figures figures = compare(read_tiff(truth_of(row.file)), picture);
        EXPECT_GE(figures.psnr, row.least_psnr);
        EXPECT_NEAR(figures.gain, 1, 0.01);
    }
}

// The colour chart of 6 x 4 patches takes the left half of the upper third of the scene, which starts 6
// columns and 4 rows outside the picture's frame; a gap surrounds it.
TEST(Picture, FlatPatchesHaveTheRightColour) {
    struct row {
        const char* file;
        unsigned scene_width;
        unsigned scene_height;
    };
    constexpr row rows[] = {
        {"10d_12bit_low_bits.crw", 758, 488},
        {"5d2_1comp.cr2", 414, 308},
        {"5d3_14bit_2comp_no_slices.cr2", 662, 434},
        {"5dsr_14bit_double_rows.cr2", 742, 488},
    };
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    for (const row& row : rows) {
        SCOPED_TRACE(row.file);
        ASSERT_EQ(convert(sample(row.file), tiff).code, eds_ok);
        const tiff_picture picture = read_tiff(tiff);
        const tiff_picture truth = read_tiff(truth_of(row.file));
        const unsigned gap = row.scene_height / 60;
        const unsigned patch_width = (row.scene_width / 2 - 2 * gap) / 6;
        const unsigned patch_height = (row.scene_height / 3 - 2 * gap) / 4;
        double sum = 0;
        for (unsigned patch = 0; patch < 24; ++patch) {
            const picture_area middle{gap - 6 + patch % 6 * patch_width + patch_width / 4,
                                      gap - 4 + patch / 6 * patch_height + patch_height / 4, patch_width / 2,
                                      patch_height / 2};
            sum += colour_difference(truth, picture, middle);
        }
        EXPECT_LT(sum / 24, 1.0);
    }
}

TEST(Picture, HasTheCamerasOwnFrameAndTheSameBytesEveryTime) {
    const scratch_folder folder;
    const auto first = folder.inq_path() / "first.tif";
    const auto second = folder.inq_path() / "second.tif";
    ASSERT_EQ(convert(real_sample(), first).code, eds_ok);
    ASSERT_EQ(convert(real_sample(), second).code, eds_ok);
    const tiff_picture picture = read_tiff(first);
    EXPECT_EQ(picture.width, 3504U);
    EXPECT_EQ(picture.height, 2336U);
    EXPECT_TRUE(read_file(first) == read_file(second));
}

} // namespace
