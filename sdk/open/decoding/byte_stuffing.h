#pragma once

#include <cstddef>
#include <span>

namespace sdk_open {

struct unstuffed_bytes {
    std::size_t n_read;    // of the stuffed bytes
    std::size_t n_written; // at most as many
    bool is_at_marker;     // or at a lone byte ff at the end: nothing after it belongs to the segment
};

// Copies bytes of an entropy-coded segment (ITU-T T.81, B.1.1.5) without the zeros that are stuffed after
// each byte ff, until there are no more, the target is full, or a marker stands there. It runs about a
// hundred times as fast as codes are read; so no reader of codes has to look for zeros.
[[nodiscard]] unstuffed_bytes remove_stuffing(std::span<const std::byte> stuffed,
                                              std::span<std::byte> target) noexcept;

} // namespace sdk_open
