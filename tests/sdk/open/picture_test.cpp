#include "sdk/open/developing/developed_picture.h"
#include "sdk/open/identifying/camera_frame.h"
#include "sdk/open/identifying/raw_decoder.h"
#include "sdk/open/output_options.h"
#include "sdk/open/writing/tiff_handle.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <array>
#include <cmath>
#include <memory>
#include <tuple>

namespace {

using values_t = std::vector<std::uint16_t>; // red, green and blue for each pixel
using picture_t = std::vector<values_t>;     // its rows

// FNV-1a over the samples, the low byte first.
std::uint64_t mosaic_checksum(const std::string& file) {
    sdk_open::raw_decoder decoder(std::as_bytes(std::span(file)));
    decoder.decode(1, [](unsigned) {});
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const unsigned sample : decoder.inq_mosaic().samples)
        for (const unsigned byte : {sample & 0xffU, sample >> 8})
            sum = (sum ^ byte) * 0x100000001b3;
    return sum;
}

picture_t read_tiff(const std::filesystem::path& file) {
    const sdk_open::tiff_handle tiff(TIFFOpen(file.c_str(), "r"));
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
    picture_t picture(height, values_t(3 * std::size_t{width}));
    EXPECT_EQ(TIFFScanlineSize64(tiff.get()), 3 * sizeof(std::uint16_t) * width);
    for (std::uint32_t row = 0; row < height; ++row)
        EXPECT_EQ(TIFFReadScanline(tiff.get(), picture[row].data(), row), 1);
    return picture;
}

int short_of(const std::filesystem::path& file, std::uint32_t tag) {
    const sdk_open::tiff_handle tiff(TIFFOpen(file.c_str(), "r"));
    std::uint16_t value = 0;
    TIFFGetField(tiff.get(), tag, &value);
    return value;
}

// Coded values against the truth's, 8 pixels from the border off: the noise, and the mean of each colour
// over the truth's.
void check_likeness(const picture_t& truth, const picture_t& picture, double least_psnr) {
    constexpr std::size_t border = 8;
    double count = 0;
    double squares = 0;
    for (std::size_t colour = 0; colour < 3; ++colour) {
        double wanted = 0;
        double found = 0;
        for (std::size_t row = border; row < truth.size() - border; ++row)
            for (std::size_t at = 3 * border + colour; at < truth[row].size() - 3 * border; at += 3) {
                const double difference = picture[row][at] - truth[row][at];
                count += 1;
                squares += difference * difference;
                wanted += truth[row][at];
                found += picture[row][at];
            }
        EXPECT_NEAR(found / wanted, 1, 0.004) << colour; // which is 1 % of the light
    }
    EXPECT_GE(10 * std::log10(65535.0 * 65535 * count / squares), least_psnr);
}

// The checksums were taken from the mosaics that the generator put into the files; that of the real camera's
// is of what `unprocessed_raw` writes. The least PSNR is 0.2 dB below what was reached; adaptive
// homogeneity-directed demosaicing has 29.4 to 30.6.
TEST(picture, equals_the_truth) {
    const std::tuple<std::string, const char*, std::uint64_t, double> rows[] = {
        {"10d_12bit_low_bits", ".crw", 0x76fa8bf4d1b18f02, 33.1},
        {"40d_14bit_2comp_uneven_slices", ".cr2", 0xa073af2f3f9714f3, 33.3},
        {"5d2_14bit_4comp_3slices_portrait", ".cr2", 0x309576cc7bb3f647, 32.8},
        {"5d2_1comp", ".cr2", 0xba1ea92c02a5eabe, 32.7},
        {"5d3_14bit_2comp_no_slices", ".cr2", 0x9cd205c362792494, 32.8},
        {"5dsr_14bit_double_rows", ".cr2", 0xe40c7fec0e5e406e, 33.1},
        {"7d_14bit_4comp_fixed_huffman", ".cr2", 0xe5451a27390c4fb8, 33.0},
        {"d60_12bit_table2_portrait", ".crw", 0xcbf1d7d1ea5b5d15, 33.3},
    };
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    for (const auto& [name, ending, checksum, least_psnr] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(mosaic_checksum(read_file(sample(name + ending))), checksum);
        ASSERT_EQ(convert(sample(name + ending), tiff), "");
        const picture_t truth = read_tiff(sample(name + ".truth.tif"));
        const picture_t picture = read_tiff(tiff);
        ASSERT_TRUE(picture.size() == truth.size() && picture[0].size() == truth[0].size());
        check_likeness(truth, picture, least_psnr);
    }
    EXPECT_EQ(mosaic_checksum(read_file(real_sample())), 0x3ee0218629980008U);
}

values_t develop(const std::string& file, unsigned workers) {
    sdk_open::raw_decoder decoder(std::as_bytes(std::span(file)));
    values_t values;
    const auto take = [&](unsigned, std::span<const std::uint16_t> rows) {
        values.insert(values.end(), rows.begin(), rows.end());
    };
    sdk_open::developed_picture(decoder).develop(
        workers, 7, [](unsigned, auto) {}, take);
    return values;
}

TEST(picture, is_the_same_with_any_number_of_threads_and_any_instruction_set) {
    for (const char* const name : {"40d_14bit_2comp_uneven_slices.cr2", "7d_14bit_4comp_fixed_huffman.cr2"}) {
        const std::string file = read_file(sample(name));
        const values_t wanted = develop(file, 1);
        EXPECT_FALSE(wanted.empty());
        for (const unsigned workers : {2U, 3U, 8U})
            EXPECT_TRUE(develop(file, workers) == wanted) << workers;
        for (std::int64_t left = hwy::SupportedTargets(); left != 0; left &= left - 1) {
            hwy::SetSupportedTargetsForTest(left & -left);
            hwy::GetChosenTarget().DeInit();
            EXPECT_TRUE(develop(file, 1) == wanted) << hwy::TargetName(left & -left);
        }
        hwy::SetSupportedTargetsForTest(0);
        hwy::GetChosenTarget().DeInit();
    }
}

TEST(picture, is_the_same_however_it_is_compressed) {
    using sdk_open::compression_t;
    const auto raw = sample("5d2_14bit_4comp_3slices_portrait.cr2");
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    ASSERT_EQ(convert(raw, tiff), "");
    const picture_t wanted = read_tiff(tiff);
    for (const auto& [compression, scheme] : {std::pair(compression_t::deflate, COMPRESSION_ADOBE_DEFLATE),
                                              {compression_t::lzw, COMPRESSION_LZW},
                                              {compression_t::zstd, COMPRESSION_ZSTD}}) {
        sdk_open::set_compression(compression);
        std::string files[2];
        for (std::string& file : files) {
            ::setenv("RAW_TO_TIFF_THREADS", &file == files ? "1" : "3", 1);
            EXPECT_EQ(convert(raw, tiff), "");
            file = read_file(tiff);
        }
        EXPECT_TRUE(files[0] == files[1]);
        EXPECT_TRUE(read_tiff(tiff) == wanted);
        EXPECT_EQ(short_of(tiff, TIFFTAG_COMPRESSION), scheme);
        EXPECT_EQ(short_of(tiff, TIFFTAG_PREDICTOR), PREDICTOR_HORIZONTAL);
    }
    ::unsetenv("RAW_TO_TIFF_THREADS");
    sdk_open::set_compression(compression_t::none);
}

// The mosaic is 800 x 600; the decoder takes 700 x 500 at (50, 40) of it for the picture.
TEST(picture, has_the_frame_that_the_camera_records_where_that_is_possible) {
    constexpr sdk_open::mosaic_area decoders_own = {50, 40, 700, 500};
    const struct {
        std::array<int, 6> camera; // width, height; left, top, right and bottom border
        sdk_open::mosaic_area frame;
        sdk_open::mosaic_area lit;
        unsigned filters = 0x94949494;
    } rows[] = {
        {{800, 600, 49, 39, 799, 599}, {49, 39, 751, 561}, {49, 39, 751, 561}},
        {{800, 600, 60, 50, 739, 529}, {60, 50, 680, 480}, decoders_own},
        {{400, 600, 60, 50, 339, 229}, decoders_own, decoders_own}, // of another mosaic
        {{800, 600, 60, 50, 800, 529}, decoders_own, decoders_own}, // one column too many
        {{800, 600, 60, 50, 739, 529}, {60, 50, 680, 480}, decoders_own, 0},
        {{800, 600, 49, 39, 799, 599}, decoders_own, decoders_own, 0}, // nothing is there but the latter
    };
    for (const auto& [camera, frame, lit, filters] : rows) {
        const auto data = std::make_unique<libraw_data_t>();
        auto& sizes = data->sizes;
        auto& canon = data->makernotes.canon;
        data->idata.filters = filters;
        std::tie(sizes.raw_width, sizes.raw_height, sizes.left_margin, sizes.top_margin, sizes.width,
                 sizes.height) = std::tuple(800, 600, 50, 40, 700, 500);
        std::tie(canon.SensorWidth, canon.SensorHeight, canon.SensorLeftBorder, canon.SensorTopBorder,
                 canon.SensorRightBorder, canon.SensorBottomBorder) = std::tuple_cat(camera);
        EXPECT_EQ(sdk_open::find_camera_frame(*data), frame) << testing::PrintToString(camera);
        EXPECT_EQ(sdk_open::find_lit_area(*data), lit) << testing::PrintToString(camera);
    }
}

} // namespace
