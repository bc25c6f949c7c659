#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace sdk_open {

// A raw picture with more samples is refused; no camera has made one.
inline constexpr std::uint64_t most_samples = 400'000'000;

// Where a decoder puts the samples of the whole sensor: row by row without gaps, in its user's memory.
struct mosaic_buffer {
    std::span<std::uint16_t> samples; // width * height
    unsigned width;
    unsigned height;
};

// Told while decoding goes on how many rows, counted from the top, will not change any more. The number never
// falls, and ends at the mosaic's height. Called on the decoding thread; what it throws ends the decoding.
using rows_listener = std::function<void(unsigned finished_rows)>;

} // namespace sdk_open
