#pragma once

#include "sdk/open/decoding/bit_cursor.h"
#include "sdk/open/decoding/lossless_jpeg.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace sdk_open {

using component_codes = std::array<std::shared_ptr<const prefix_code>, most_jpeg_components>;

// Where one or more cursors write the differences that they read; each has room for all of them.
template <std::size_t streams>
using difference_targets = std::array<std::uint16_t*, streams>;

// Reads the next difference, modulo 2^16. Throws failure(damaged_picture) where there is no code.
inline std::uint16_t read_difference(bit_cursor& cursor, const prefix_code& code) {
    cursor.refill();
    const coded_difference found = code.find(cursor.inq_bits());
    const auto difference = static_cast<std::uint16_t>(found.value(cursor.inq_bits()));
    cursor.skip(found.length);
    return difference;
}

// Reads this many columns, one difference modulo 2^16 for each component. The next code waits for the length
// of the one before, so that two streams take turns in hardly more time than one. Two codes seldom take more
// bits than a refill gives: one refill serves two components. Throws failure(damaged_picture) where there is
// no code.
template <std::size_t components, std::size_t streams>
void read_columns(std::array<bit_cursor, streams>& cursors, const component_codes& codes,
                  const difference_targets<streams>& targets, std::size_t columns) {
    std::array<bit_cursor, streams> cursor = cursors;
    std::array<const prefix_code*, components> code{};
    for (std::size_t c = 0; c < components; ++c)
        code[c] = codes[c].get();
    for (std::size_t at = 0; at < columns * components; at += components)
        for (std::size_t c = 0; c < components; ++c)
            for (std::size_t s = 0; s < streams; ++s) {
                if (c % 2 == 0 || cursor[s].inq_count() < prefix_code::longest_length)
                    cursor[s].refill();
                const coded_difference found = code[c]->find(cursor[s].inq_bits());
                targets[s][at + c] = static_cast<std::uint16_t>(found.value(cursor[s].inq_bits()));
                cursor[s].skip(found.length);
            }
    cursors = cursor;
}

template <std::size_t streams>
void read_columns(unsigned components, std::array<bit_cursor, streams>& cursors, const component_codes& codes,
                  const difference_targets<streams>& targets, std::size_t columns) {
    switch (components) {
    case 1:
        return read_columns<1>(cursors, codes, targets, columns);
    case 2:
        return read_columns<2>(cursors, codes, targets, columns);
    case 3:
        return read_columns<3>(cursors, codes, targets, columns);
    default:
        return read_columns<4>(cursors, codes, targets, columns);
    }
}

} // namespace sdk_open
