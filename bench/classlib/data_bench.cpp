// Appending to ZData, beside std::vector.

#include "classlib/streams/ZData.h"

#include <array>
#include <benchmark/benchmark.h>
#include <vector>

namespace {

// Below the size from which the allocator asks the system for fresh pages, which would be all that is
// measured.
constexpr int n_bytes = 20000;
constexpr std::array<unsigned char, 100> piece{1, 2, 3};

// Kept apart from the loops that call them, so that the buffers live in memory as those of a caller do.
[[gnu::noinline]] void fill(ZData& data) {
    for (int i = 0; i < n_bytes; ++i)
        static_cast<void>(data.append_byte(static_cast<unsigned char>(i)));
}

[[gnu::noinline]] void fill(std::vector<unsigned char>& data) {
    for (int i = 0; i < n_bytes; ++i)
        data.push_back(static_cast<unsigned char>(i));
}

[[gnu::noinline]] void fill_by_pieces(ZData& data) {
    for (std::size_t i = 0; i < n_bytes; i += piece.size())
        static_cast<void>(data.append(piece.data(), piece.size()));
}

[[gnu::noinline]] void fill_by_pieces(std::vector<unsigned char>& data) {
    for (std::size_t i = 0; i < n_bytes; i += piece.size())
        data.insert(data.end(), piece.begin(), piece.end());
}

void data_append_byte(benchmark::State& state) {
    for (auto _ : state) {
        ZData data;
        fill(data);
        benchmark::DoNotOptimize(data.inq_data());
    }
}
BENCHMARK(data_append_byte);

void peer_vector_push_back(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<unsigned char> data;
        fill(data);
        benchmark::DoNotOptimize(data.data());
    }
}
BENCHMARK(peer_vector_push_back);

void data_append(benchmark::State& state) {
    for (auto _ : state) {
        ZData data;
        fill_by_pieces(data);
        benchmark::DoNotOptimize(data.inq_data());
    }
}
BENCHMARK(data_append);

void peer_vector_insert(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<unsigned char> data;
        fill_by_pieces(data);
        benchmark::DoNotOptimize(data.data());
    }
}
BENCHMARK(peer_vector_insert);

} // namespace
