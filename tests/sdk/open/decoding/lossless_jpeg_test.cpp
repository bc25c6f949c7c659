#include "sdk/open/decoding/cr2_mosaic.h"
#include "sdk/open/failure.h"
#include "tests/sdk/open/decoding/lossless_jpeg_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using sdk_open::mosaic_slices;
using sample_list = std::vector<std::uint16_t>;

class lossless_jpeg_test : public testing::Test {
protected:
    // From first to last.
    unsigned pick(unsigned first, unsigned last) {
        return std::uniform_int_distribution<unsigned>(first, last)(m_random);
    }

    // A code for each symbol that differences need. Codes are split in two until there are enough, some of
    // them always the last one, which makes for long codes.
    code_table make_table() {
        std::vector<unsigned> lengths(1);
        const unsigned style = pick(0, 2);
        while (lengths.size() < 18) {
            const unsigned last = static_cast<unsigned>(lengths.size()) - 1;
            unsigned& split = lengths[pick(0, style) == 0 ? pick(0, last) : last];
            if (split == 16)
                continue;
            lengths.push_back(++split);
        }
        std::ranges::sort(lengths);
        lengths.pop_back();
        code_table table{{}, std::vector<std::uint8_t>(17)};
        for (const unsigned length : lengths)
            ++table.counts[length - 1];
        std::iota(table.symbols.begin(), table.symbols.end(), std::uint8_t{0});
        std::ranges::shuffle(table.symbols, m_random);
        return table;
    }

    // Small and large steps, up and down; or noise, for which the longest codes may follow one another.
    sample_list make_samples(std::size_t count, unsigned precision) {
        sample_list samples(count);
        unsigned value = 0;
        const bool is_noise = pick(0, 2) == 0;
        for (std::uint16_t& sample : samples) {
            value += pick(0, (2U << (is_noise ? 16 : pick(0, precision))) - 1) - pick(0, 3);
            sample = static_cast<std::uint16_t>(value & ((1U << precision) - 1));
        }
        return samples;
    }

    jpeg_plan make_plan() {
        const bool is_long = pick(0, 9) == 0; // lines that take more than one go
        jpeg_plan plan{.precision = pick(2, 16),
                       .width = is_long ? pick(600, 5000) : pick(1, 60),
                       .height = pick(1, 30),
                       .components = pick(1, 4),
                       .predictor = std::max(pick(0, 7), 1U),
                       .restart_interval = 0,
                       .tables = {}};
        if (pick(0, 4) == 0)
            plan.restart_interval = plan.width * pick(1, 5);
        for (unsigned count = pick(1, plan.components); count > 0; --count)
            plan.tables.push_back(make_table());
        return plan;
    }

    mosaic_slices make_slices(unsigned width) {
        if (width == 1 || pick(0, 3) == 0)
            return {};
        const unsigned slice = pick(std::max(width / 5, 1U), width - 1);
        const unsigned count = pick(1, (width - 1) / slice);
        return {count, slice, width - count * slice};
    }

private:
    std::mt19937 m_random{5};
};

// The mosaic's samples in the order in which its slices are stored.
sample_list cut(const sample_list& mosaic, unsigned width, mosaic_slices slices) {
    if (slices.count == 0)
        return mosaic;
    sample_list stored;
    for (unsigned left = 0; left < width; left += slices.width) {
        const unsigned end = std::min(left + std::max(slices.width, 1U), width);
        const bool is_last = left == slices.count * slices.width;
        for (std::size_t row = 0; row < mosaic.size(); row += width)
            stored.insert(stored.end(), mosaic.begin() + static_cast<std::ptrdiff_t>(row + left),
                          mosaic.begin() + static_cast<std::ptrdiff_t>(row + (is_last ? width : end)));
        if (is_last)
            break;
    }
    return stored;
}

sdk_open::lossless_jpeg read(const std::string& bytes) {
    return sdk_open::read_lossless_jpeg(std::as_bytes(std::span(bytes)));
}

TEST_F(lossless_jpeg_test, gives_back_what_was_encoded) {
    for (int round = 0; round < 300; ++round) {
        const jpeg_plan plan = make_plan();
        unsigned width = plan.width * plan.components;
        unsigned height = plan.height;
        if (width % 2 == 0 && pick(0, 3) == 0) { // two rows in one line
            width /= 2;
            height *= 2;
        }
        const mosaic_slices slices = make_slices(width);
        const unsigned lead = round % 10 == 0 ? 2 : 0;
        sample_list expected = make_samples(std::size_t{width} * height, plan.precision);
        const std::string bytes = write_lossless_jpeg(plan, cut(expected, width, slices));
        std::fill(std::shift_left(expected.begin(), expected.end(), lead), expected.end(), std::uint16_t{0});
        SCOPED_TRACE(testing::Message() << round << ": " << plan.precision << " bits, " << plan.components
                                        << " components, predictor " << plan.predictor << ", " << width
                                        << " x " << height << ", " << slices.count << " slices");
        sample_list decoded(expected.size());
        unsigned finished = 0;
        sdk_open::decode_mosaic({read(bytes), slices, lead}, {decoded, width, height}, [&](unsigned rows) {
            ASSERT_GE(rows, finished);
            EXPECT_TRUE(std::equal(decoded.begin() + std::ptrdiff_t{finished} * width,
                                   decoded.begin() + std::ptrdiff_t{rows} * width,
                                   expected.begin() + std::ptrdiff_t{finished} * width));
            finished = rows;
        });
        EXPECT_EQ(finished, height);
        EXPECT_TRUE(decoded == expected);
    }
}

// 12 lines of 8 columns, restarted after each fourth line; the code 11 is none.
TEST_F(lossless_jpeg_test, refuses_damage) {
    const code_table table{{1, 1, 0}, {0, 1}};
    const jpeg_plan intact{8, 8, 12, 2, 1, 32, {table, table}};
    const auto edit = [](const char* from, const char* to) {
        return [=](std::string& bytes, mosaic_slices&) { bytes.replace(bytes.find(from, 0, 2), 2, to, 2); };
    };
    struct row {
        const char* name;
        std::function<void(std::string& bytes, mosaic_slices& slices)> inflict;
        const char* reason;
    };
    const char* const no_restart = "the pixel data restart where they should not";
    const char* const wrong_end = "the pixel data do not end where they should";
    const row rows[] = {
        {"nothing", [](std::string&, mosaic_slices&) {}, ""},
        {"another restart marker", edit("\xff\xd1", "\xff\xd2"), no_restart},
        {"an end before a restart", edit("\xff\xd0", "\xff\xd9"), no_restart},
        {"no restart", edit("\xff\xd0", "\x00\x00"), wrong_end},
        {"a restart in place of the end", edit("\xff\xd9", "\xff\xd3"), wrong_end},
        {"a byte in place of a restart", edit("\xff\xd0", "\xff\x00"), wrong_end},
        {"no code", [](std::string& bytes, mosaic_slices&) { bytes[bytes.find("\xff\xd0") + 2] = '\x60'; },
         "the pixel data are damaged"},
        {"an end within",
         [](std::string& bytes, mosaic_slices&) { bytes.insert(bytes.find("\xff\xd1") - 2, "\xff\xd9"); },
         "the pixel data end early"},
        {"restarts within a line", edit("\x00\x20", "\x00\x21"), "the pixel data restart within a line"},
        {"a component of another resolution", edit("\x01\x11", "\x01\x21"),
         "raw pictures of reduced resolution are not supported"},
        {"a scan of other components", edit("\x02\x10", "\x03\x10"),
         "the pixel data have an impossible geometry"},
        {"slices too wide",
         [](std::string&, mosaic_slices& slices) {
             slices = {2, 8, 8};
         },
         "the pixel data are cut into impossible slices"},
        {"fewer lines", edit("\x00\x0c", "\x00\x0b"), "the pixel data have another size than the picture"},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.name);
        sample_list samples(16 * 12, 128);
        std::string bytes = write_lossless_jpeg(intact, samples);
        mosaic_slices slices{1, 4, 12};
        row.inflict(bytes, slices);
        std::string reason;
        try {
            sdk_open::decode_mosaic({read(bytes), slices, 0}, {samples, 16, 12}, [](unsigned) {});
        } catch (const sdk_open::failure& problem) {
            reason = problem.what();
        }
        EXPECT_EQ(reason, row.reason);
    }
    sample_list too_bright(16 * 12, 128);
    too_bright[100] = 256;
    const jpeg_plan wider{8, 8, 12, 2, 1, 0, {make_table()}};
    const std::string bytes = write_lossless_jpeg(wider, too_bright);
    EXPECT_THROW(sdk_open::decode_mosaic({read(bytes), {}, 0}, {too_bright, 16, 12}, [](unsigned) {}),
                 sdk_open::failure);
}

} // namespace
