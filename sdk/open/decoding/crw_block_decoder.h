#pragma once

#include "sdk/open/decoding/bit_cursor.h"
#include "sdk/open/decoding/crw_codes.h"
#include "sdk/open/decoding/segment_reader.h"

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

    // Decodes the next rows, whole blocks in all. Throws failure(damaged_picture).
    void decode_rows(std::span<std::uint16_t> samples);

    // After the last block. Throws failure(damaged_picture) where the data do not end there.
    void finish();

private:
    using block = std::span<std::uint16_t, block_size>;

    void decode_blocks(std::span<std::uint16_t> differences);
    void decode_block(bit_cursor& bits, block zeros) const;

    crw_codes m_codes;
    segment_reader m_segment;
    unsigned m_row_length;
    std::uint16_t m_first_difference = 0; // of the block before, modulo 2^16
};

} // namespace sdk_open
