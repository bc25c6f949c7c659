#pragma once

#include "sdk/open/decoding/lossless_jpeg.h"
#include "sdk/open/decoding/segment_reader.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// Decodes the scan of a lossless JPEG (ITU-T T.81, annex H) line by line.
class lossless_jpeg_decoder final {
public:
    // Throws std::bad_alloc only.
    explicit lossless_jpeg_decoder(lossless_jpeg jpeg);

    // The next of the lines: width times the samples of all components. It stays until the next but one is
    // decoded. Throws failure(damaged_picture) where the data end early, hold what is no code, or give a
    // sample of more bits than the precision.
    [[nodiscard]] std::span<const std::uint16_t> decode_line();

    // After the last line. Throws failure(damaged_picture) where the data do not end there.
    void finish();

private:
    // What a sample is predicted from before there is one to the left: the first of the line above.
    using predictions = std::array<unsigned, most_jpeg_components>;

    void restart();
    void decode_columns(std::span<std::uint16_t> samples, predictions& sums);
    void predict_from_above();
    void check_precision() const;

    lossless_jpeg m_jpeg;
    segment_reader m_segment;
    unsigned m_next_line = 0;
    predictions m_line_starts{};
    std::vector<std::uint16_t> m_line;
    std::vector<std::uint16_t> m_line_above;
};

} // namespace sdk_open
