#pragma once

#include "sdk/open/decoding/bit_cursor.h"
#include "sdk/open/decoding/prefix_code.h"

#include <cstdint>

namespace sdk_open {

// The difference that the first bits, 0 to 15 of them, stand for (ITU-T T.81, F.2.2.1): a number that starts
// with a one is itself, and one that starts with a zero, its bits turned over, is negative. It is modulo
// 2^32. 10 gives 2, 11 gives 3, 01 gives -2, 00 gives -3; no bits give 0.
[[nodiscard]] constexpr unsigned extend(std::uint64_t bits, unsigned length) noexcept {
    const std::uint64_t ones_if_negative = (bits >> 63) - 1;
    const std::uint64_t magnitude = ((bits ^ ones_if_negative) >> 1) >> (63 - length);
    return static_cast<unsigned>((magnitude ^ ones_if_negative) - ones_if_negative);
}

// Reads the next code and the difference behind it, no more than most_difference_bits; so many must be at
// hand. Throws failure(damaged_picture) where there is no code.
inline constexpr unsigned most_difference_bits = 31;

[[nodiscard]] inline unsigned read_difference(bit_cursor& cursor, const prefix_code& code) {
    auto found = code.find_short(cursor.inq_bits());
    if (found.whole_length == 0) [[unlikely]] {
        constexpr unsigned longest_difference = 16;
        found = code.find_any(cursor.inq_bits());
        if (found.symbol == longest_difference) {
            cursor.skip(found.code_length);
            return 1U << (longest_difference - 1);
        }
    }
    const unsigned difference = extend(cursor.inq_bits() << found.code_length, found.value_length);
    cursor.skip(found.whole_length);
    return difference;
}

} // namespace sdk_open
