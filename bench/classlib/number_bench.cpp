// Numbers to text and back, beside std::to_chars and std::from_chars, over a sink that drops its bytes.

#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/streams/ZWStream.h"

#include <array>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

namespace {

class dropping_sink final : public ZWStream {
public:
    bool write_bytes(const void* data, int n) override {
        benchmark::DoNotOptimize(data);
        benchmark::DoNotOptimize(n);
        return true;
    }
};

// Numbers of every length, as a linear congruential generator makes them.
const std::vector<std::uint64_t>& inq_integers() {
    static const std::vector<std::uint64_t> integers = [] {
        std::vector<std::uint64_t> made(1000);
        std::uint64_t state = 1;
        for (std::size_t i = 0; i < made.size(); ++i) {
            state = state * 6364136223846793005U + 1442695040888963407U;
            made[i] = state >> (i % 64);
        }
        return made;
    }();
    return integers;
}

double as_double(std::uint64_t integer) {
    return static_cast<double>(integer) / 1e6;
}

std::string inq_integer_text() {
    std::string text;
    for (const std::uint64_t integer : inq_integers())
        text += std::to_string(integer) + ' ';
    return text;
}

template <typename Value>
void drop(const Value* first, const Value* last) {
    benchmark::DoNotOptimize(first);
    benchmark::DoNotOptimize(last);
}

void write_integers(benchmark::State& state) {
    dropping_sink out;
    for (auto _ : state) {
        for (const std::uint64_t integer : inq_integers())
            out << integer;
    }
}
BENCHMARK(write_integers);

void peer_to_chars_integers(benchmark::State& state) {
    std::array<char, 64> text;
    for (auto _ : state) {
        for (const std::uint64_t integer : inq_integers())
            drop(text.data(), std::to_chars(text.data(), text.data() + text.size(), integer).ptr);
    }
}
BENCHMARK(peer_to_chars_integers);

void parse_integers(benchmark::State& state) {
    const std::string text = inq_integer_text();
    for (auto _ : state) {
        ZMemoryRStream in(text.data(), static_cast<int>(text.size()));
        for (std::size_t i = 0; i < inq_integers().size(); ++i)
            benchmark::DoNotOptimize(in.read_unsigned());
    }
}
BENCHMARK(parse_integers);

void peer_from_chars_integers(benchmark::State& state) {
    const std::string text = inq_integer_text();
    for (auto _ : state) {
        const char* at = text.data();
        for (std::size_t i = 0; i < inq_integers().size(); ++i) {
            std::uint64_t value = 0;
            at = std::from_chars(at, text.data() + text.size(), value).ptr + 1;
            benchmark::DoNotOptimize(value);
        }
    }
}
BENCHMARK(peer_from_chars_integers);

template <bool IsScientific>
void write_doubles(benchmark::State& state) {
    dropping_sink out;
    if (IsScientific)
        out << scientific;
    for (auto _ : state) {
        for (const std::uint64_t integer : inq_integers())
            out << as_double(integer);
    }
}
BENCHMARK(write_doubles<false>);

template <bool IsScientific>
void peer_to_chars_doubles(benchmark::State& state) {
    constexpr auto form = IsScientific ? std::chars_format::scientific : std::chars_format::fixed;
    constexpr int precision = IsScientific ? 5 : 6;
    std::array<char, 512> text;
    for (auto _ : state) {
        for (const std::uint64_t integer : inq_integers())
            drop(text.data(),
                 std::to_chars(text.data(), text.data() + text.size(), as_double(integer), form, precision)
                     .ptr);
    }
}
BENCHMARK(peer_to_chars_doubles<false>);
BENCHMARK(write_doubles<true>);
BENCHMARK(peer_to_chars_doubles<true>);

} // namespace
