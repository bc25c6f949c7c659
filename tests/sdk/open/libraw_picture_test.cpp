#include "sdk/open/developing/developed_picture.h"
#include "sdk/open/developing/libraw_picture.h"
#include "sdk/open/developing/picture_maker.h"
#include "sdk/open/developing/srgb.h"
#include "sdk/open/failure.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/decoding/lossless_jpeg_writer.h"
#include "tests/support/scratch_folder.h"

#include "tests/sdk/open/samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;
using sdk_open::finished_picture;

struct pixels_t {
    unsigned width;
    std::vector<std::uint16_t> values;
};

pixels_t pixels_of(finished_picture& picture) {
    pixels_t pixels{picture.inq_width(), {}};
    const auto take = [&](unsigned, std::span<const std::uint16_t> rows) {
        pixels.values.insert(pixels.values.end(), rows.begin(), rows.end());
    };
    picture.develop(
        2, 7, [](unsigned, auto) {}, take);
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
        sdk_open::developed_picture developed(decoder);
        const pixels_t ours = pixels_of(developed);
        sdk_open::libraw_picture by_libraw(decoder);
        const pixels_t theirs = pixels_of(by_libraw);
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
                    EXPECT_NEAR(block_at(theirs, column, row).means[colour], block.means[colour], 250)
                        << column << ' ' << row << ' ' << colour;
            }
        EXPECT_GE(n_flat, 10U);
    }
}

// What a picture of reduced resolution has at a pixel: its luma, and the chromas of blue and red.
struct sraw_pixel {
    int luma;
    std::array<int, 2> chromas;
};

constexpr unsigned stripe_width = 80;
constexpr std::array<sraw_pixel, 3> stripes = {{{4000, {0, 0}}, {3000, {-400, 800}}, {16383, {0, 0}}}};
constexpr unsigned sraw_width = stripe_width * stripes.size();
constexpr unsigned sraw_height = 160; // small, but still the largest picture of the file

// Three stripes. Units of two columns, and one or two rows, have their chromas in common. Each luma is
// predicted from the one before it; the writer, which knows only of components that are predicted from
// themselves, is given samples with the same differences.
std::string make_sraw_jpeg(unsigned unit_rows) {
    const unsigned n_lumas = 2 * unit_rows;
    const unsigned step = n_lumas + 2;
    constexpr unsigned precision = 15;
    constexpr int no_chroma = 1 << (precision - 1);
    std::array<unsigned, 17> lengths;
    lengths.fill(5);
    std::array<std::uint8_t, 17> symbols;
    std::iota(symbols.begin(), symbols.end(), std::uint8_t{0});
    constexpr unsigned never = 500; // LibRaw does not understand an interval of 0
    const jpeg_plan plan{.precision = precision,
                         .width = sraw_width / 2,
                         .height = sraw_height / unit_rows,
                         .components = step,
                         .predictor = 1,
                         .restart_lines = never,
                         .tables = {make_table(lengths, symbols)}};
    std::vector<std::uint16_t> line;
    std::vector<int> last(step, no_chroma); // what the writer predicts from
    int last_luma = no_chroma;
    for (unsigned column = 0; column < sraw_width; column += 2) {
        const sraw_pixel& pixel = stripes[column / stripe_width];
        for (unsigned at = 0; at < step; ++at) {
            if (at < n_lumas)
                last[at] += pixel.luma - std::exchange(last_luma, pixel.luma);
            else
                last[at] = no_chroma + pixel.chromas[at - n_lumas];
            line.push_back(static_cast<std::uint16_t>(last[at]));
        }
    }
    std::vector<std::uint16_t> samples;
    for (unsigned row = 0; row < plan.height; ++row)
        samples.insert(samples.end(), line.begin(), line.end());
    std::string jpeg = lossless_jpeg_writer(plan).write(samples);
    const std::size_t frame = jpeg.find("\xff\xc3");
    jpeg[frame + 6] = static_cast<char>(sraw_height);
    jpeg[frame + 8] = static_cast<char>(sraw_width);
    jpeg[frame + 9] = 3;
    jpeg[frame + 11] = static_cast<char>(0x20 + unit_rows);
    const std::size_t scan = jpeg.find("\xff\xda");
    jpeg.replace(scan + 2, 3, "\0\x0c\3"s); // three components there, too
    return jpeg.erase(scan + 5 + std::size_t{2} * 3, std::size_t{2} * (step - 3));
}

// A file whose camera has already multiplied the colours by its white balance: it records by what they are
// to be multiplied to have them as the sensor saw them.
std::string make_sraw(unsigned unit_rows) {
    std::string file = read_file(sample("5d3_14bit_2comp_no_slices.cr2"));
    const auto balance = "\xd0\x07\0\4\0\4\x40\6"s; // 2000, 1024, 1024, 1600: as shot, others follow
    std::size_t at = file.find(balance);
    file.replace(at, 8, "\0\x08\0\4\0\4\0\x06"s);
    for (unsigned other = 0; other < 29; ++other)
        file.replace(at += 10, 8, "\0\2\0\4\0\4\xab\2"s);
    return file.substr(0, file.rfind("\xff\xd8\xff\xc4")) + make_sraw_jpeg(unit_rows);
}

// The coded value that a stripe's colour becomes.
std::array<double, 3> finished(const sraw_pixel& pixel, const libraw_colordata_t& color) {
    const auto [blue, red] = pixel.chromas;
    const int green = (-778 * blue - 2048 * red) >> 12;
    const std::array<double, 3> camera = {1.0 * pixel.luma + red, 1.0 * pixel.luma + green,
                                          1.0 * pixel.luma + blue};
    static const auto curve = sdk_open::make_srgb_curve();
    std::array<double, 3> values{};
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const double light = std::inner_product(camera.begin(), camera.end(), color.rgb_cam[channel], 0.0);
        values[channel] = curve[static_cast<std::size_t>(std::clamp(light * 65535 / 16383, 0.0, 65535.0))];
    }
    return values;
}

TEST(libraw_picture, of_reduced_resolution_has_the_colours_that_were_stored) {
    for (const unsigned unit_rows : {1U, 2U}) {
        const std::string file = make_sraw(unit_rows);
        sdk_open::raw_decoder decoder(bytes_of(file));
        const pixels_t pixels = pixels_of(*sdk_open::make_picture(decoder));
        ASSERT_EQ(pixels.width, sraw_width);
        ASSERT_EQ(pixels.values.size(), std::size_t{3} * sraw_width * sraw_height);
        for (std::size_t stripe = 0; stripe < stripes.size(); ++stripe) {
            const block_t block = block_at(pixels, stripe * stripe_width + 8, 32);
            const auto wanted = finished(stripes[stripe], decoder.inq_data().color);
            for (std::size_t colour = 0; colour < 3; ++colour)
                EXPECT_NEAR(block.means[colour], wanted[colour], 60) << unit_rows << stripe << colour;
        }
    }
}

// A mosaic of an EOS D60 in the name of a camera with four colours, whose pixels claim not to be square.
std::string make_four_colours() {
    std::string file = read_file(sample("d60_12bit_table2_portrait.crw"));
    const auto put = [&](std::string_view anchor, std::size_t distance, const std::string& bytes) {
        file.replace(file.rfind(anchor) + distance, bytes.size(), bytes);
    };
    put("Canon EOS D60", 0, "Canon PowerShot G1\0"s);
    put({"\x0a\x08\x14\0", 4}, 2, "\x1a"); // the record of the model
    put({"\x34\x58\0\x80\x66\1", 6}, 2, "\0\0\4\1"s);
    put({"\0\0\x80\x3f", 4}, 0, "\0\0\0\x3f"s);
    return file;
}

// The second picture of a decoder, too. The scene has lamps that clip all colours: they are white.
TEST(libraw_picture, of_four_colours_has_the_frame_of_all_others) {
    const std::string file = make_four_colours();
    sdk_open::raw_decoder decoder(bytes_of(file));
    ASSERT_EQ(decoder.inq_data().idata.colors, 4);
    const pixels_t pixels = pixels_of(*sdk_open::make_picture(decoder));
    EXPECT_EQ(pixels.width, 426U);
    EXPECT_EQ(pixels.values.size(), std::size_t{3} * 426 * 640);
    EXPECT_TRUE(pixels_of(*sdk_open::make_picture(decoder)).values == pixels.values);
    std::size_t n_white = 0;
    for (std::size_t at = 0; at < pixels.values.size(); at += 3)
        if (*std::min_element(&pixels.values[at], &pixels.values[at] + 3) >= 64500)
            ++n_white;
    EXPECT_GE(n_white, 10U);
}

std::string reason_against(const std::string& file) {
    try {
        sdk_open::raw_decoder decoder(bytes_of(file));
        static_cast<void>(sdk_open::make_picture(decoder));
    } catch (const sdk_open::failure& problem) {
        return problem.what();
    }
    return "";
}

TEST(libraw_picture, is_none_where_libraw_meets_with_damage) {
    const std::string sraw = make_sraw(1);
    const std::size_t jpeg = sraw.rfind("\xff\xd8\xff\xc4");
    const std::size_t frame = sraw.find("\xff\xc3", jpeg);
    constexpr std::string_view no_end = "the pixel data do not end where they should";
    const std::tuple<const char*, std::size_t, std::string, std::string_view> rows[] = {
        {"nothing", 0, "", ""},
        {"no end", sraw.size() - 2, "\xff\xd0", no_end},
        {"an early end", sraw.size() - 900, "\xff\xd9", "the pixel data are damaged"},
        {"codes of zero", sraw.size() - 900, std::string(898, '\0'), no_end},
        {"a table with too many codes", jpeg + 7, "\x7f\x7f", "the pixel data end early"},
        {"fewer rows", frame + 6, "\x9e", no_end},
        {"an odd number of rows", frame + 6, "\x9f", "the pixel data have an impossible geometry"},
    };
    for (const auto& [name, position, bytes, reason] : rows)
        EXPECT_EQ(reason_against(std::string(sraw).replace(position, bytes.size(), bytes)), reason) << name;
    std::string four_colours = make_four_colours();
    const auto black_levels = "\x7f\0\x7f\0\x7f\0\x7f\0"s;
    four_colours.replace(four_colours.rfind(black_levels), 8, 8, '\x7f');
    EXPECT_EQ(reason_against(four_colours), "the black or the white level is damaged");
    EXPECT_EQ(reason_against(sraw.substr(0, sraw.size() - 100)),
              "the file ends early or its structure is damaged");
}

std::string make_entry(unsigned tag, unsigned type, unsigned count, std::size_t value) {
    std::string entry;
    for (const auto& [number, size] : {std::pair{std::size_t{tag}, 2}, {type, 2}, {count, 4}, {value, 4}})
        for (int at = 0; at < size; ++at)
            entry += static_cast<char>(number >> 8 * at & 0xff);
    return entry;
}

// LibRaw would divide by a width of nothing, or go through the picture for each of 55,551 slices.
TEST(libraw_picture, is_none_where_libraw_would_be_led_astray) {
    const std::string sraw = make_sraw(1);
    const std::size_t jpeg = sraw.rfind("\xff\xd8\xff\xc4");
    const std::size_t entries = sraw.find(make_entry(0x111, 4, 1, jpeg)) + 12;
    constexpr std::string_view impossible = "the pixel data have an impossible geometry";
    std::string narrow = sraw;
    narrow.replace(entries, 24, make_entry(0x100, 4, 1, sraw_width) + make_entry(0x101, 4, 1, sraw_height));
    EXPECT_EQ(reason_against(narrow), "");
    narrow.replace(sraw.find("\xff\xc3", jpeg) + 7, 2, "\0\1"s);
    EXPECT_EQ(reason_against(narrow), impossible);
    std::string sliced = sraw;
    sliced.replace(entries, 12, make_entry(0xc640, 3, 3, jpeg)); // which begins with ff d8
    EXPECT_EQ(reason_against(sliced), impossible);
}

} // namespace
