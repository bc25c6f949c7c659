#include "sdk/open/decoding/cr2_mosaic.h"
#include "sdk/open/failure.h"
#include "tests/sdk/open/decoding/lossless_jpeg_writer.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace {

using sdk_open::mosaic_slices;
using sample_list = std::vector<std::uint16_t>;

// From first to last.
unsigned pick(unsigned first, unsigned last) {
    static std::mt19937 random{5};
    return std::uniform_int_distribution<unsigned>(first, last)(random);
}

// Codes are split in two until there is one more than needed, so that none has ones alone. Some tables split
// the last one only, which makes for long codes.
code_table make_random_table() {
    std::vector<unsigned> lengths(1);
    const unsigned style = pick(0, 2);
    while (lengths.size() < 18) {
        const unsigned last = static_cast<unsigned>(lengths.size()) - 1;
        unsigned& split = lengths[pick(0, style) == 0 ? pick(0, last) : last];
        if (split < 16)
            lengths.push_back(++split);
    }
    std::ranges::sort(lengths);
    std::vector<std::uint8_t> symbols(17);
    std::iota(symbols.begin(), symbols.end(), std::uint8_t{0});
    for (std::size_t at = 0; at < symbols.size(); ++at)
        std::swap(symbols[at], symbols[pick(0, 16)]);
    return make_table(lengths, symbols);
}

jpeg_plan make_plan() {
    const bool is_long = pick(0, 9) == 0; // lines that take more than one go
    jpeg_plan plan{.precision = pick(2, 16),
                   .width = is_long ? pick(600, 5000) : pick(1, 60),
                   .height = pick(1, 30),
                   .components = pick(1, 4),
                   .predictor = std::max(pick(0, 7), 1U),
                   .restart_lines = pick(0, 4) == 0 ? pick(1, 5) : 0,
                   .tables = {}};
    for (unsigned count = pick(1, plan.components); count > 0; --count)
        plan.tables.push_back(make_random_table());
    return plan;
}

mosaic_slices make_slices(unsigned width) {
    if (width == 1 || pick(0, 3) == 0)
        return {0, 0, 0};
    const unsigned slice = pick(std::max(width / 5, 1U), width - 1);
    const unsigned count = pick(1, (width - 1) / slice);
    return {count, slice, width - count * slice};
}

// The mosaic's samples in the order in which its slices are stored.
sample_list cut(const sample_list& mosaic, unsigned width, mosaic_slices slices) {
    sample_list stored;
    for (unsigned slice = 0; slice <= slices.count; ++slice) {
        const std::size_t left = std::size_t{slice} * slices.width;
        const std::size_t right = slice == slices.count ? width : left + slices.width;
        for (std::size_t row = 0; row < mosaic.size(); row += width)
            stored.insert(stored.end(), &mosaic[row] + left, &mosaic[row] + right);
    }
    return stored;
}

sdk_open::lossless_jpeg read(const std::string& bytes) {
    return sdk_open::read_lossless_jpeg(std::as_bytes(std::span(bytes)));
}

TEST(lossless_jpeg, gives_back_what_was_encoded) {
    for (unsigned round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const jpeg_plan plan = make_plan();
        const unsigned width = plan.width * plan.components;
        const mosaic_slices slices = make_slices(width);
        const unsigned lead = round % 10 == 0 ? 2 : 0;
        sample_list expected(std::size_t{width} * plan.height);
        for (std::uint16_t& sample : expected) // small and large steps
            sample = static_cast<std::uint16_t>(pick(0, (1U << pick(0, plan.precision)) - 1));
        const std::string bytes = lossless_jpeg_writer(plan).write(cut(expected, width, slices));
        std::fill(std::shift_left(expected.begin(), expected.end(), lead), expected.end(), std::uint16_t{0});
        sample_list decoded(expected.size());
        unsigned n_finished = 0;
        const auto check = [&](unsigned rows) {
            ASSERT_GE(rows, n_finished);
            n_finished = rows;
            EXPECT_TRUE(std::equal(&decoded[0], &decoded[0] + std::size_t{rows} * width, &expected[0]));
        };
        sdk_open::decode_mosaic({read(bytes), slices, lead}, {decoded, width, plan.height}, 1 + round % 3,
                                check);
        EXPECT_EQ(n_finished, plan.height);
    }
}

// 12 lines of 8 columns, restarted after each fourth line. The first code is that of the difference 127,
// 10 1111111; then there are zeros. The code 11 is none.
TEST(lossless_jpeg, refuses_damage) {
    const unsigned lengths[] = {1, 2};
    const std::uint8_t symbols[] = {0, 7};
    const jpeg_plan plan{8, 8, 12, 2, 1, 4, {make_table(lengths, symbols)}};
    const std::string intact = lossless_jpeg_writer(plan).write(sample_list(16 * 12, 255));
    const struct {
        const char* bytes; // two of them
        const char* damaged;
        const char* reason;
    } rows[] = {
        {"\xff\xd1", "\xff\xd1", ""},
        {"\xff\xd1", "\xff\xd2", "the pixel data restart where they should not"},
        {"\xff\xd0", "\x00\x00", "the pixel data do not end where they should"},
        {"\xff\xd9", "\xff\xd3", "the pixel data do not end where they should"},
        {"\xd0\xbf", "\xd0\xdf", "the pixel data are damaged"}, // no code
        {"\x0e\x08", "\x0e\x07", "the pixel data are damaged"}, // larger than the precision allows
        {"\xd0\xbf", "\xd0\xff", "the pixel data end early"},
        {"\x00\x20", "\x00\x21", "the pixel data restart within a line"},
        {"\x01\x11", "\x01\x21", "the raw picture is stored in an unknown way"},
        {"\x02\x00", "\x03\x00", "the pixel data have an impossible geometry"}, // of other components
        {"\x00\x0c", "\x00\x0b", "the pixel data have another size than the picture"},
    };
    for (const auto& row : rows) {
        std::string bytes = intact;
        bytes.replace(bytes.rfind(row.bytes, std::string::npos, 2), 2, row.damaged, 2);
        sample_list decoded(16 * 12);
        std::string reason;
        try {
            sdk_open::decode_mosaic({read(bytes), {1, 4, 12}, 0}, {decoded, 16, 12}, 1, [](unsigned) {});
        } catch (const sdk_open::failure& problem) {
            reason = problem.what();
        }
        EXPECT_EQ(reason, row.reason);
    }
}

} // namespace
