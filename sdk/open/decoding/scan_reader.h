#pragma once

#include "sdk/open/decoding/lossless_jpeg.h"
#include "sdk/open/decoding/scan_pieces.h"
#include "sdk/open/decoding/segment_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace sdk_open {

// Reads the differences of a scan, column by column: in pieces that several threads decode, as far as the
// scan can be cut, and in order from there on.
class scan_reader final {
public:
    // Throws std::bad_alloc only. The JPEG and its bytes must stay while the reader is in use.
    scan_reader(const lossless_jpeg& jpeg, unsigned workers);

    // The differences, modulo 2^16, of the next columns: at least one, and at most most_columns. They stay
    // until the next call. Throws failure(damaged_picture) where the data end early or hold what is no code.
    [[nodiscard]] std::span<const std::uint16_t> read(std::size_t most_columns);

    // Continues after the restart marker of this number, from 0 to 7; throws failure(damaged_picture) where
    // there is none.
    void restart(unsigned number);

    // Throws failure(damaged_picture) where the image does not end here.
    void finish();

private:
    [[nodiscard]] std::span<const std::uint16_t> read_in_order(std::size_t most_columns);
    [[nodiscard]] std::uint16_t read_one(std::size_t component);
    void join_next();

    const lossless_jpeg& m_jpeg;
    std::unique_ptr<scan_pieces> m_pieces;   // null when the rest is read in order
    std::span<const std::uint16_t> m_joined; // what is left of a piece
    scan_place m_place{0, 0};                // where the next piece begins
    segment_reader m_segment;
    std::array<std::uint16_t, segment_reader::most_at_once / sizeof(std::uint32_t)> m_block{};
};

} // namespace sdk_open
