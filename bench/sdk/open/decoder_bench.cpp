// Decoding a real camera's mosaic, beside LibRaw's own decoder: the file that RAW_TO_TIFF_SAMPLE names, or
// else the EOS 30D picture of Debian's rawtran-doc. Both on one core, from memory into memory.

#include "sdk/open/decoding/mosaic_buffer.h"
#include "sdk/open/identifying/pixel_data.h"

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <libraw/libraw.h>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {

std::vector<char>& inq_file() {
    static std::vector<char> bytes = [] {
        const char* const given = std::getenv("RAW_TO_TIFF_SAMPLE");
        std::ifstream file(given != nullptr ? given : "/usr/share/doc/rawtran/IMG_5952.CR2",
                           std::ios::binary);
        return std::vector<char>(std::istreambuf_iterator<char>(file), {});
    }();
    return bytes;
}

// Identified, and ready to be decoded; nothing where there is no such file.
std::unique_ptr<LibRaw> identify() {
    auto libraw = std::make_unique<LibRaw>();
    const int answer = libraw->open_buffer(inq_file().data(), inq_file().size());
    return answer == LIBRAW_SUCCESS ? std::move(libraw) : nullptr;
}

void count_pixels(benchmark::State& state, const libraw_image_sizes_t& sizes) {
    const auto pixels = static_cast<double>(std::size_t{sizes.raw_width} * sizes.raw_height);
    state.counters["pixels"] = benchmark::Counter(pixels, benchmark::Counter::kIsIterationInvariantRate);
}

void decode_mosaic(benchmark::State& state) {
    const auto libraw = identify();
    if (libraw == nullptr)
        return state.SkipWithError("no sample picture");
    const libraw_image_sizes_t& sizes = libraw->imgdata.sizes;
    std::vector<std::uint16_t> samples(std::size_t{sizes.raw_width} * sizes.raw_height);
    for (auto _ : state) {
        const sdk_open::pixel_data stored(std::as_bytes(std::span(inq_file())), *libraw);
        stored.decode({samples, sizes.raw_width, sizes.raw_height}, 1, [](unsigned) {});
        benchmark::DoNotOptimize(samples.data());
    }
    count_pixels(state, sizes);
}
BENCHMARK(decode_mosaic)->Unit(benchmark::kMillisecond);

void peer_libraw_unpack(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const auto libraw = identify();
        if (libraw == nullptr)
            return state.SkipWithError("no sample picture");
        state.ResumeTiming();
        benchmark::DoNotOptimize(libraw->unpack());
        count_pixels(state, libraw->imgdata.sizes);
    }
}
BENCHMARK(peer_libraw_unpack)->Unit(benchmark::kMillisecond);

} // namespace
