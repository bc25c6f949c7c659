#include "sdk/open/developing/developed_picture.h"
#include "sdk/open/developing/libraw_picture.h"
#include "sdk/open/developing/picture_maker.h"
#include "sdk/open/developing/srgb.h"
#include "sdk/open/failure.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/decoding/lossless_jpeg_writer.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
#include <tuple>

namespace {

using namespace std::string_literals;
using sdk_open::finished_picture;

struct pixels_t {
    unsigned width;
    std::vector<std::uint16_t> values;
};

pixels_t pixels_of(finished_picture&& picture) {
    pixels_t pixels{picture.inq_width(), {}};
    picture.develop(2, 7, [&](std::span<const std::uint16_t> rows) {
        pixels.values.insert(pixels.values.end(), rows.begin(), rows.end());
    });
    EXPECT_EQ(pixels.values.size(), std::size_t{3} * picture.inq_width() * picture.inq_height());
    return pixels;
}

std::span<const std::byte> bytes_of(const std::string& file) {
    return std::as_bytes(std::span(file));
}

// A block of pixels: for each colour the mean, and how far its values lie apart.
struct block_t {
    std::array<double, 3> means;
    int spread;
};

block_t block_at(const pixels_t& pixels, std::size_t column, std::size_t row) {
    constexpr std::size_t size = 8;
    block_t block{{}, 0};
    for (std::size_t colour = 0; colour < 3; ++colour) {
        int least = 0xffff;
        int most = 0;
        for (std::size_t at = 0; at < size * size; ++at) {
            const int value =
                pixels.values[((row + at / size) * pixels.width + column + at % size) * 3 + colour];
            block.means[colour] += value / double{size * size};
            least = std::min(least, value);
            most = std::max(most, value);
        }
        block.spread = std::max(block.spread, most - least);
    }
    return block;
}

// The same mosaics both ways: turned in all directions, and with a frame that is one column and row larger
// than what LibRaw takes for the picture. Demosaicing differs, what is flat must not.
TEST(libraw_picture, has_the_colours_and_the_frame_of_our_own) {
    for (const char* const name :
         {"5d2_1comp.cr2", "40d_14bit_2comp_uneven_slices.cr2", "5d2_14bit_4comp_3slices_portrait.cr2",
          "7d_14bit_4comp_fixed_huffman.cr2", "10d_12bit_low_bits.crw"}) {
        SCOPED_TRACE(name);
        const std::string file = read_file(sample(name));
        sdk_open::raw_decoder decoder(bytes_of(file));
        const pixels_t ours = pixels_of(sdk_open::developed_picture(decoder));
        const pixels_t theirs = pixels_of(sdk_open::libraw_picture(decoder));
        ASSERT_TRUE(theirs.width == ours.width && theirs.values.size() == ours.values.size());
        unsigned n_flat = 0;
        for (std::size_t row = 0; row + 8 <= ours.values.size() / 3 / ours.width; row += 8)
            for (std::size_t column = 0; column + 8 <= ours.width; column += 8) {
                const block_t block = block_at(ours, column, row);
                constexpr int flat = 300;
                if (block.spread > flat)
                    continue;
                ++n_flat;
                for (std::size_t colour = 0; colour < 3; ++colour)
                    EXPECT_NEAR(block_at(theirs, column, row).means[colour], block.means[colour], 200)
                        << column << ' ' << row << ' ' << colour;
            }
        EXPECT_GE(n_flat, 10U);
    }
}

} // namespace
