#pragma once

#include "sdk/open/decoding/prefix_code.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace sdk_open {

inline constexpr unsigned most_jpeg_components = 4;

// What stands in front of the codes of a lossless JPEG (ITU-T T.81, process 14), as a .cr2 carries its
// mosaic.
struct lossless_jpeg {
    unsigned precision;     // bits per sample, 2 to 16
    unsigned height;        // lines
    unsigned width;         // columns of components samples each
    unsigned components;    // 1 to most_jpeg_components
    unsigned predictor;     // 1 to 7
    unsigned restart_lines; // after this many lines the coding starts afresh; 0 for never
    std::array<std::shared_ptr<const prefix_code>, most_jpeg_components> codes; // of each component
    std::span<const std::byte> scan; // the codes, and all that follows them

    [[nodiscard]] std::uint64_t inq_sample_count() const noexcept {
        return std::uint64_t{height} * width * components;
    }
};

enum class sampling_t {
    even,    // all components have the frame's resolution
    reduced, // the first of three has; two or four of its samples come with one of each other
};

// Reads the headers at the start of the bytes, which must stay while the answer is in use. Throws
// failure(damaged_picture) where they are cut off or contradict themselves, or a code table is missing or no
// prefix code, and failure(not_supported) where the components have other resolutions.
[[nodiscard]] lossless_jpeg read_lossless_jpeg(std::span<const std::byte> bytes,
                                               sampling_t sampling = sampling_t::even);

} // namespace sdk_open
