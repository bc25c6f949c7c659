#include "sdk/open/developing/developed_picture.h"
#include "sdk/open/raw_decoder.h"
#include "sdk/open/tiff_handle.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

// FNV-1a over the samples, the low byte first.
std::uint64_t mosaic_checksum(const std::string& file) {
    sdk_open::raw_decoder decoder(std::as_bytes(std::span(file)));
    decoder.decode([](unsigned) {});
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const unsigned sample : decoder.inq_mosaic().samples)
        for (const unsigned byte : {sample & 0xffU, sample >> 8})
            sum = (sum ^ byte) * 0x100000001b3;
    return sum;
}

using picture_t = std::vector<std::vector<std::uint16_t>>; // rows of red, green and blue for each pixel

picture_t read_tiff(const std::filesystem::path& file) {
    const sdk_open::tiff_handle tiff(TIFFOpen(file.c_str(), "r"));
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    if (!tiff || TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) != 1 ||
        TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height) != 1 ||
        TIFFScanlineSize64(tiff.get()) != 3 * sizeof(std::uint16_t) * width)
        throw std::runtime_error("no RGB picture of 16 bits for each channel: " + file.string());
    picture_t picture(height, std::vector<std::uint16_t>(3 * std::size_t{width}));
    for (std::uint32_t row = 0; row < height; ++row)
        EXPECT_EQ(TIFFReadScanline(tiff.get(), picture[row].data(), row), 1);
    return picture;
}

// Coded values against the truth's, 8 pixels from the border off: the noise, the mean over the truth's, and
// how far the mean colours of squares of 48 pixels are apart on average, where 1 is from black to a primary
// colour.
void check_likeness(const picture_t& truth, const picture_t& picture, double least_psnr) {
    constexpr std::size_t border = 8;
    constexpr std::size_t size = 48;
    double count = 0;
    double squares = 0;
    double wanted = 0;
    double found = 0;
    std::map<std::pair<std::size_t, std::size_t>, std::array<double, 3>> differences;
    for (std::size_t row = border; row < truth.size() - border; ++row)
        for (std::size_t at = 3 * border; at < truth[row].size() - 3 * border; ++at) {
            const double difference = picture[row][at] - truth[row][at];
            count += 1;
            squares += difference * difference;
            wanted += truth[row][at];
            found += picture[row][at];
            differences[{row / size, at / 3 / size}][at % 3] += difference / 65535;
        }
    EXPECT_GE(10 * std::log10(65535.0 * 65535 * count / squares), least_psnr);
    EXPECT_NEAR(found / wanted, 1, 0.004); // which is 1 % of the light
    double sum = 0;
    for (const auto& [square, colour] : differences)
        sum += std::hypot(colour[0], colour[1], colour[2]);
    EXPECT_LT(sum / (count / 3), 0.004);
}

// The checksums were taken from the mosaics that the generator put into the files. The least PSNR is 0.2 dB
// below what was reached; adaptive homogeneity-directed demosaicing has 29.4 to 30.6.
TEST(picture, equals_the_truth) {
    const struct {
        std::string name;
        const char* ending;
        std::uint64_t checksum;
        std::size_t width;
        std::size_t height;
        double least_psnr;
    } rows[] = {
        {"10d_12bit_low_bits", ".crw", 0x76fa8bf4d1b18f02, 720, 480, 33.1},
        {"40d_14bit_2comp_uneven_slices", ".cr2", 0xa073af2f3f9714f3, 720, 480, 33.3},
        {"5d2_14bit_4comp_3slices_portrait", ".cr2", 0x309576cc7bb3f647, 480, 720, 32.8},
        {"5d2_1comp", ".cr2", 0xba1ea92c02a5eabe, 400, 300, 32.7},
        {"5d3_14bit_2comp_no_slices", ".cr2", 0x9cd205c362792494, 640, 426, 32.8},
        {"5dsr_14bit_double_rows", ".cr2", 0xe40c7fec0e5e406e, 720, 480, 33.1},
        {"7d_14bit_4comp_fixed_huffman", ".cr2", 0xe5451a27390c4fb8, 426, 640, 33.0},
        {"d60_12bit_table2_portrait", ".crw", 0xcbf1d7d1ea5b5d15, 426, 640, 33.3},
    };
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(mosaic_checksum(read_file(sample(row.name + row.ending))), row.checksum);
        ASSERT_EQ(convert(sample(row.name + row.ending), tiff).reason, "");
        const picture_t truth = read_tiff(sample(row.name + ".truth.tif"));
        const picture_t picture = read_tiff(tiff);
        ASSERT_TRUE(picture.size() == row.height && picture[0].size() == 3 * row.width);
        check_likeness(truth, picture, row.least_psnr);
    }
}

std::vector<std::uint16_t> develop(const std::string& file, unsigned workers) {
    sdk_open::raw_decoder decoder(std::as_bytes(std::span(file)));
    std::vector<std::uint16_t> values;
    sdk_open::developed_picture(decoder).develop(workers, 7, [&](std::span<const std::uint16_t> rows) {
        values.insert(values.end(), rows.begin(), rows.end());
    });
    return values;
}

TEST(picture, is_the_same_with_any_number_of_threads_and_any_instruction_set) {
    for (const char* const name :
         {"40d_14bit_2comp_uneven_slices.cr2", "7d_14bit_4comp_fixed_huffman.cr2", "5d2_1comp.cr2"}) {
        const std::string file = read_file(sample(name));
        const auto wanted = develop(file, 1);
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

TEST(picture, ends_with_the_first_failure_of_its_taker) {
    const std::string file = read_file(sample("5d2_1comp.cr2"));
    sdk_open::raw_decoder decoder(std::as_bytes(std::span(file)));
    unsigned taken = 0;
    const auto take = [&](std::span<const std::uint16_t>) {
        if (++taken == 2)
            throw std::runtime_error("full");
    };
    EXPECT_THROW(sdk_open::developed_picture(decoder).develop(3, 1, take), std::runtime_error);
    EXPECT_EQ(taken, 2U);
}

// The checksum is of what `unprocessed_raw` writes.
TEST(picture, of_a_real_camera_has_its_frame_and_the_same_bytes_every_time) {
    const scratch_folder folder;
    const auto first = folder.inq_path() / "first.tif";
    const auto second = folder.inq_path() / "second.tif";
    EXPECT_EQ(mosaic_checksum(read_file(real_sample())), 0x3ee0218629980008U);
    EXPECT_EQ(convert(real_sample(), first).reason + convert(real_sample(), second).reason, "");
    const picture_t picture = read_tiff(first);
    EXPECT_TRUE(picture.size() == 2336 && picture[0].size() == 3 * 3504);
    EXPECT_TRUE(read_file(first) == read_file(second));
}

} // namespace
