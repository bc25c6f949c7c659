#include "sdk/open/decoding/crw_block_decoder.h"

#include "sdk/open/failure.h"

#include <algorithm>

namespace sdk_open {
namespace {

constexpr std::size_t most_block_bytes = 4 * crw_block_decoder::block_size; // a code and its difference: four
constexpr unsigned sample_bits = 10;

std::uint16_t wrapped(unsigned value) noexcept {
    return static_cast<std::uint16_t>(value & 0xffffU);
}

// What is read is gone from the cursor.
struct run_and_difference {
    unsigned symbol;
    std::uint16_t difference; // modulo 2^16
};

run_and_difference read_next(bit_cursor& cursor, const prefix_code& code) {
    cursor.refill();
    const coded_difference found = code.find(cursor.inq_bits());
    const std::uint16_t difference = wrapped(found.value(cursor.inq_bits()));
    cursor.skip(found.length);
    return {found.symbol, difference};
}

// Turns the differences of a row into samples.
void add_up(std::span<std::uint16_t> row) {
    unsigned even = 1U << (sample_bits - 1);
    unsigned odd = even;
    unsigned all_bits = 0;
    for (std::size_t at = 0; at < row.size(); at += 2) {
        row[at] = wrapped(even += row[at]);
        row[at + 1] = wrapped(odd += row[at + 1]);
        all_bits |= unsigned{row[at]} | row[at + 1];
    }
    if (all_bits >> sample_bits != 0)
        throw_damaged("the pixel data are damaged");
}

} // namespace

crw_block_decoder::crw_block_decoder(std::span<const std::byte> codes, unsigned table, unsigned row_length)
    : m_codes(make_crw_codes(table)), m_segment(codes), m_row_length(row_length) {}

void crw_block_decoder::decode_rows(std::span<std::uint16_t> samples) {
    constexpr std::size_t at_once = segment_reader::most_at_once / most_block_bytes * block_size;
    for (auto left = samples; !left.empty();) {
        const auto part = left.first(std::min(left.size(), at_once));
        decode_blocks(part);
        left = left.subspan(part.size());
    }
    for (; !samples.empty(); samples = samples.subspan(m_row_length))
        add_up(samples.first(m_row_length));
}

void crw_block_decoder::finish() {
    constexpr std::size_t most_behind = 4; // bytes: the camera may add a marker and fill up after it
    if (m_segment.finish().size() > most_behind)
        throw_damaged("the pixel data do not end where they should");
}

void crw_block_decoder::decode_blocks(std::span<std::uint16_t> differences) {
    bit_cursor bits = m_segment.resume(differences.size() / block_size * most_block_bytes);
    std::ranges::fill(differences, std::uint16_t{0});
    for (; !differences.empty(); differences = differences.subspan(block_size)) {
        decode_block(bits, differences.first<block_size>());
        differences[0] = m_first_difference = wrapped(m_first_difference + differences[0]);
    }
    m_segment.suspend(bits);
}

void crw_block_decoder::decode_block(bit_cursor& bits, block zeros) const {
    bit_cursor cursor = bits;
    zeros[0] = read_next(cursor, m_codes.first).difference;
    for (std::size_t at = 1; at < block_size; ++at) {
        const run_and_difference read = read_next(cursor, m_codes.others);
        if (read.symbol == 0) // no more differences in this block
            break;
        at += read.symbol >> 4;
        if (at >= block_size)
            throw_damaged("the pixel data are damaged");
        zeros[at] = read.difference;
    }
    bits = cursor;
}

} // namespace sdk_open
