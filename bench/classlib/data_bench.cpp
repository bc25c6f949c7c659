// Appending to ZData, beside std::vector.

#include "classlib/streams/ZData.h"

#include <array>
#include <benchmark/benchmark.h>
#include <vector>

namespace {

// Sizes spread over an octave, as both buffers double their blocks, each at sizes of its own: what one size
// costs depends on how much was copied just before it is reached. All are below the size from which the
// allocator asks the system for fresh pages, which would be all that is measured.
constexpr std::array sizes{12000, 14300, 17000, 20200};
constexpr int n_piece = 100;
constexpr std::array<unsigned char, n_piece> piece{1, 2, 3};

// Kept apart from the loops that call them, so that the buffers live in memory as those of a caller do.
[[gnu::noinline]] void fill(ZData& data, int n_bytes) {
    for (int i = 0; i < n_bytes; ++i)
        static_cast<void>(data.append_byte(static_cast<unsigned char>(i)));
}

[[gnu::noinline]] void fill(std::vector<unsigned char>& data, int n_bytes) {
    for (int i = 0; i < n_bytes; ++i)
        data.push_back(static_cast<unsigned char>(i));
}

[[gnu::noinline]] void fill_by_pieces(ZData& data, int n_bytes) {
    for (int i = 0; i < n_bytes; i += n_piece)
        static_cast<void>(data.append(piece.data(), n_piece));
}

[[gnu::noinline]] void fill_by_pieces(std::vector<unsigned char>& data, int n_bytes) {
    for (int i = 0; i < n_bytes; i += n_piece)
        data.insert(data.end(), piece.begin(), piece.end());
}

template <typename Buffer>
void append_bytes(benchmark::State& state) {
    for (auto _ : state)
        for (const int n_bytes : sizes) {
            Buffer data;
            fill(data, n_bytes);
            benchmark::DoNotOptimize(&data);
        }
}

template <typename Buffer>
void append_pieces(benchmark::State& state) {
    for (auto _ : state)
        for (const int n_bytes : sizes) {
            Buffer data;
            fill_by_pieces(data, n_bytes);
            benchmark::DoNotOptimize(&data);
        }
}

using peer_t = std::vector<unsigned char>;

BENCHMARK(append_bytes<ZData>);
BENCHMARK(append_bytes<peer_t>);
BENCHMARK(append_pieces<ZData>);
BENCHMARK(append_pieces<peer_t>);

} // namespace
