#pragma once

#include "sdk/open/decoding/bit_cursor.h"

#include <array>
#include <cstddef>
#include <span>

namespace sdk_open {

// Reads an entropy-coded segment (ITU-T T.81, B.1.1.5): what lies before the next marker. The zeros that are
// stuffed into it are taken out a block at a time.
class segment_reader final {
public:
    static constexpr std::size_t most_at_once = 8192;

    // The bytes are someone else's and must stay while the reader is in use.
    explicit segment_reader(std::span<const std::byte> bytes, std::size_t first_bit = 0) noexcept
        : m_stuffed(bytes), m_bit(first_bit) {}

    // The bits that come next; up to size bytes, at most most_at_once, may be read. Beyond the segment's end
    // lie zeros.
    [[nodiscard]] bit_cursor resume(std::size_t size) noexcept;

    // Goes on after what the cursor has read. Throws failure(damaged_picture) where that is more than there
    // is.
    void suspend(const bit_cursor& cursor);

    // Answers what follows the segment, marker first. Throws failure(damaged_picture) where the segment goes
    // on after what was read by more than some padding.
    [[nodiscard]] std::span<const std::byte> finish();

private:
    static constexpr std::size_t read_ahead = 16; // of a cursor, in bytes

    void fill_block() noexcept;

    std::span<const std::byte> m_stuffed; // what is not in the block yet
    std::array<std::byte, 2 * most_at_once + read_ahead> m_block{};
    std::size_t m_end = 0; // of the segment's bytes in the block
    std::size_t m_bit;     // the next one, counted in the block
};

} // namespace sdk_open
