// Reading from a block in memory, beside code written by hand and the standard streams.

#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/strings/ZString.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int n_bytes = 1 << 20;

const std::vector<unsigned char>& inq_bytes() {
    static const std::vector<unsigned char> bytes = [] {
        std::vector<unsigned char> filled(n_bytes);
        for (std::size_t i = 0; i < filled.size(); ++i)
            filled[i] = static_cast<unsigned char>(i * 7);
        return filled;
    }();
    return bytes;
}

const std::string& inq_lines() {
    static const std::string lines = [] {
        std::string text;
        while (text.size() < n_bytes)
            text +=
                "The quick brown fox jumps over the lazy dog, number " + std::to_string(text.size()) + "\n";
        return text;
    }();
    return lines;
}

void read_int32(benchmark::State& state) {
    for (auto _ : state) {
        ZMemoryRStream in(inq_bytes().data(), n_bytes);
        int value = 0;
        while (in.read_int32(value))
            benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(read_int32);

// The cursor of the peers stays in memory, where a reader that is handed around has its own.
struct cursor_t {
    const unsigned char* at;
    const unsigned char* end;
};

cursor_t make_cursor() {
    return {inq_bytes().data(), inq_bytes().data() + n_bytes};
}

void peer_memcpy_and_swap(benchmark::State& state) {
    for (auto _ : state) {
        cursor_t cursor = make_cursor();
        benchmark::DoNotOptimize(&cursor);
        while (cursor.at != cursor.end) {
            std::uint32_t pattern = 0;
            std::memcpy(&pattern, cursor.at, sizeof pattern);
            cursor.at += sizeof pattern;
            int value = static_cast<int>(__builtin_bswap32(pattern));
            benchmark::DoNotOptimize(value);
        }
    }
}
BENCHMARK(peer_memcpy_and_swap);

void get_byte(benchmark::State& state) {
    for (auto _ : state) {
        ZMemoryRStream in(inq_bytes().data(), n_bytes);
        for (int c = in.get(); c >= 0; c = in.get())
            benchmark::DoNotOptimize(c);
    }
}
BENCHMARK(get_byte);

void peer_pointer_walk(benchmark::State& state) {
    for (auto _ : state) {
        cursor_t cursor = make_cursor();
        benchmark::DoNotOptimize(&cursor);
        while (cursor.at != cursor.end) {
            int c = *cursor.at++;
            benchmark::DoNotOptimize(c);
        }
    }
}
BENCHMARK(peer_pointer_walk);

void read_line(benchmark::State& state) {
    for (auto _ : state) {
        ZMemoryRStream in(inq_lines().data(), static_cast<int>(inq_lines().size()));
        ZString line;
        while (in.read_line(line))
            benchmark::DoNotOptimize(line);
    }
}
BENCHMARK(read_line);

void peer_getline(benchmark::State& state) {
    std::istringstream in(inq_lines());
    for (auto _ : state) {
        in.clear();
        in.seekg(0);
        std::string line;
        while (std::getline(in, line))
            benchmark::DoNotOptimize(line);
    }
}
BENCHMARK(peer_getline);

} // namespace
