#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace sdk_open {

// The geometry of a lossless JPEG stream (ITU-T T.81, process 14), as a .cr2 carries its mosaic.
struct lossless_jpeg {
    unsigned precision;  // bits per sample, 2 to 16
    unsigned height;     // lines
    unsigned width;      // columns of components samples each
    unsigned components; // 1, 2 or 4

    [[nodiscard]] std::uint64_t inq_sample_count() const noexcept {
        return std::uint64_t{height} * width * components;
    }
};

// Reads the headers at the start of the bytes. Throws failure(damaged_picture) where they are cut off or
// contradict themselves, a code table is missing or no prefix code, or the stream makes use of something that
// the decoder passes over without a word: restarts, several scans, tables shared out in another order.
[[nodiscard]] lossless_jpeg read_lossless_jpeg(std::span<const std::byte> bytes);

// Whether the entropy-coded data really end where the decoder stopped reading: an end-of-image marker follows
// after no more than the bytes that the decoder reads ahead or leaves as padding.
[[nodiscard]] bool ends_at(std::span<const std::byte> bytes, std::size_t stop);

} // namespace sdk_open
