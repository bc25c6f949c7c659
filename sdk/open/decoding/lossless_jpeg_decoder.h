#pragma once

#include "sdk/open/decoding/lossless_jpeg.h"
#include "sdk/open/decoding/scan_reader.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// Decodes the scan of a lossless JPEG (ITU-T T.81, annex H) line by line.
class lossless_jpeg_decoder final {
public:
    // Has up to workers threads at work, the calling one among them. Throws std::bad_alloc only. The JPEG
    // must stay while the decoder is in use.
    lossless_jpeg_decoder(const lossless_jpeg& jpeg, unsigned workers);

    // The next of the lines: width times the samples of all components. It stays until the next but one is
    // decoded. Throws failure(damaged_picture) where the data end early, hold what is no code, or give a
    // sample of more bits than the precision.
    [[nodiscard]] std::span<const std::uint16_t> decode_line();

    // After the last line. Throws failure(damaged_picture) where the data do not end there.
    void finish() { m_scan.finish(); }

private:
    // What a sample is predicted from before there is one to the left: the first of the line above.
    using predictions = std::array<unsigned, most_jpeg_components>;

    void decode_columns(std::span<std::uint16_t> samples, predictions& sums);
    void predict_from_above();
    void check_precision() const;

    const lossless_jpeg& m_jpeg;
    scan_reader m_scan;
    unsigned m_next_line = 0;
    predictions m_line_starts{};
    std::vector<std::uint16_t> m_line;
    std::vector<std::uint16_t> m_line_above;
};

} // namespace sdk_open
