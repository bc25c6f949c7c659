#include "sdk/open/decoding/crw_mosaic.h"

#include "fuzz/fuzz_target.h"
#include "sdk/open/failure.h"

#include <algorithm>
#include <vector>

// Any bytes as the record with the samples of a .crw: they are refused, or give samples of the precision.
namespace {

void run(fuzz_input input) {
    const unsigned table = input.take_value<std::uint8_t>();
    const unsigned width = input.take_value<std::uint8_t>() * 8U + input.take_value<std::uint8_t>() / 128U;
    const unsigned height = input.take_value<std::uint8_t>();
    const std::string_view record = input.take();
    std::vector<std::uint16_t> samples(std::size_t{width} * height);
    const auto source = sdk_open::read_crw_mosaic(std::as_bytes(std::span(record)), table, samples.size());
    unsigned n_finished = 0;
    decode_mosaic(source, {samples, width, height}, 1, [&](unsigned rows) {
        require(rows > n_finished && rows <= height, "the rows that are finished become fewer");
        n_finished = rows;
    });
    require(n_finished == height, "not all rows are said to be finished");
    require(
        std::ranges::all_of(samples, [&](unsigned sample) { return sample >> source.inq_precision() == 0; }),
        "a sample has too many bits");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    try {
        run(fuzz_input(data, size));
    } catch (const sdk_open::failure&) { // which is an answer as good as any
    }
    return 0;
}
