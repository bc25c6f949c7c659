#pragma once

#include "sdk/open/decoding/bit_cursor.h"
#include "sdk/open/decoding/crw_codes.h"
#include "sdk/open/decoding/segment_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace sdk_open {

// Decodes the ten-bit samples of a .crw. They come in blocks of 64 differences, each to the sample two
// columns to its left; a row starts from the middle of the range. The first difference of a block is coded as
// what it differs from that of the block before.
class crw_block_decoder final {
public:
    static constexpr std::size_t block_size = 64; // samples

    // The row length must be even.
    crw_block_decoder(std::span<const std::byte> codes, unsigned table, unsigned row_length);

    // Decodes the next samples, a multiple of the block's size of them. Throws failure(damaged_picture).
    void decode(std::span<std::uint16_t> samples);

    // After the last block. Throws failure(damaged_picture) where the data do not end there.
    void finish();

private:
    using block = std::array<std::uint16_t, block_size>; // differences modulo 2^16

    void decode_blocks(std::span<std::uint16_t> samples);
    [[nodiscard]] block read_block(bit_cursor& bits) const;
    void add_up(block& differences, std::span<std::uint16_t> samples);

    crw_codes m_codes;
    segment_reader m_segment;
    unsigned m_row_length;
    unsigned m_column = 0;
    std::uint16_t m_first_difference = 0; // of the block before
    std::uint16_t m_even = 0;             // the last sample in an even column
    std::uint16_t m_odd = 0;
    unsigned m_all_bits = 0; // of all samples
};

} // namespace sdk_open
