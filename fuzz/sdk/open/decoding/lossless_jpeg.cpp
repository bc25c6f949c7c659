#include "tests/sdk/open/decoding/lossless_jpeg_writer.h"

#include "fuzz/fuzz_target.h"
#include "sdk/open/decoding/cr2_mosaic.h"
#include "sdk/open/decoding/lossless_jpeg_decoder.h"
#include "sdk/open/failure.h"

#include <algorithm>
#include <numeric>

// Any bytes as a lossless JPEG, cut into any slices. What can be decoded and is encoded anew decodes to the
// same samples, whatever the predictor and the restarts; the slices lose none of them; and a long scan is the
// same in pieces as in order.
namespace {

constexpr std::uint64_t most_samples = 1 << 18; // to be fast
using sample_list = std::vector<std::uint16_t>;

sdk_open::lossless_jpeg read(std::string_view bytes) {
    return sdk_open::read_lossless_jpeg(std::as_bytes(std::span(bytes)));
}

sample_list decode_lines(const sdk_open::lossless_jpeg& jpeg) {
    sample_list samples;
    sdk_open::lossless_jpeg_decoder decoder(jpeg, 1);
    for (unsigned line = 0; line < jpeg.height; ++line) {
        const auto decoded = decoder.decode_line();
        samples.insert(samples.end(), decoded.begin(), decoded.end());
    }
    decoder.finish();
    return samples;
}

// All differences take a code of five bits.
std::string encode(const sdk_open::lossless_jpeg& jpeg, const sample_list& samples) {
    std::array<std::uint8_t, 17> symbols{};
    std::iota(symbols.begin(), symbols.end(), std::uint8_t{0});
    std::array<unsigned, 17> lengths{};
    lengths.fill(5);
    const jpeg_plan plan{jpeg.precision,
                         jpeg.width,
                         jpeg.height,
                         jpeg.components,
                         jpeg.predictor,
                         jpeg.restart_lines,
                         {make_table(lengths, symbols)}};
    return lossless_jpeg_writer(plan).write(samples);
}

void check_mosaic(const sdk_open::cr2_mosaic& source, const sample_list& lines) {
    const unsigned width = source.slices.count * source.slices.width + source.slices.last_width;
    if (width == 0 || lines.size() % width != 0)
        return;
    sample_list mosaic(lines.size());
    const auto height = static_cast<unsigned>(lines.size() / width);
    unsigned n_finished = 0;
    decode_mosaic(source, {mosaic, width, height}, 1, [&](unsigned rows) {
        require(rows >= n_finished && rows <= height, "the rows that are finished become fewer");
        n_finished = rows;
    });
    require(n_finished == height, "not all rows are said to be finished");
    require(std::accumulate(mosaic.begin(), mosaic.end(), 0U) ==
                std::accumulate(lines.begin(), lines.end(), 0U),
            "slices lost samples");
}

// As many lines as can be decoded.
sample_list decode_what_can_be(const sdk_open::lossless_jpeg& jpeg, bool& is_intact) {
    sample_list samples;
    try {
        sdk_open::lossless_jpeg_decoder decoder(jpeg, 2);
        for (unsigned line = 0; line < jpeg.height; ++line) {
            const auto decoded = decoder.decode_line();
            samples.insert(samples.end(), decoded.begin(), decoded.end());
        }
        decoder.finish();
        is_intact = true;
    } catch (const sdk_open::failure&) {
        is_intact = false;
    }
    return samples;
}

// Pieces are larger than any input: the codes come over and over. A scan that may start afresh, if only after
// its end, is read in order. Damage in a piece is noticed before its lines are handed out.
void check_pieces(const sdk_open::lossless_jpeg& jpeg) {
    constexpr std::size_t scan_size = 300'000;
    const auto is_marker = [](std::byte a, std::byte b) { return a == std::byte{0xff} && b != std::byte{0}; };
    const auto codes = jpeg.scan.first(
        static_cast<std::size_t>(std::ranges::adjacent_find(jpeg.scan, is_marker) - jpeg.scan.begin()));
    if (codes.empty())
        return;
    std::vector<std::byte> scan;
    while (scan.size() < scan_size)
        scan.insert(scan.end(), codes.begin(), codes.end());
    sdk_open::lossless_jpeg in_pieces = jpeg;
    in_pieces.scan = scan;
    in_pieces.height = static_cast<unsigned>(most_samples / jpeg.width / jpeg.components);
    in_pieces.restart_lines = 0;
    sdk_open::lossless_jpeg in_order = in_pieces;
    in_order.restart_lines = in_order.height + 1;
    bool is_intact = false;
    bool is_intact_in_order = false;
    const sample_list samples = decode_what_can_be(in_pieces, is_intact);
    const sample_list ordered = decode_what_can_be(in_order, is_intact_in_order);
    require(is_intact == is_intact_in_order && samples.size() <= ordered.size() &&
                std::equal(samples.begin(), samples.end(), ordered.begin()),
            "a scan is another one in pieces");
}

void run(fuzz_input input) {
    const sdk_open::mosaic_slices slices{input.take_value<std::uint8_t>(), input.take_value<std::uint16_t>(),
                                         input.take_value<std::uint16_t>()};
    const sdk_open::lossless_jpeg jpeg = read(input.take());
    if (jpeg.inq_sample_count() > most_samples)
        return;
    check_pieces(jpeg);
    const sample_list lines = decode_lines(jpeg);
    require(decode_lines(read(encode(jpeg, lines))) == lines, "what was encoded did not come back");
    check_mosaic({jpeg, slices, 0}, lines);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    try {
        run(fuzz_input(data, size));
    } catch (const sdk_open::failure&) { // which is an answer as good as any
    }
    return 0;
}
