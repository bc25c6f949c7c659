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

} // namespace

crw_block_decoder::crw_block_decoder(std::span<const std::byte> codes, unsigned table, unsigned row_length)
    : m_codes(make_crw_codes(table)), m_segment(codes), m_row_length(row_length), m_column(row_length) {}

void crw_block_decoder::decode(std::span<std::uint16_t> samples) {
    constexpr std::size_t at_once = segment_reader::most_at_once / most_block_bytes * block_size;
    while (!samples.empty()) {
        const auto part = samples.first(std::min(samples.size(), at_once));
        decode_blocks(part);
        samples = samples.subspan(part.size());
    }
    if (m_all_bits >> sample_bits != 0)
        throw_damaged("the pixel data are damaged");
}

void crw_block_decoder::finish() {
    constexpr std::size_t most_behind = 4; // bytes: the camera may add a marker and fill up after it
    if (m_segment.finish().size() > most_behind)
        throw_damaged("the pixel data do not end where they should");
}

void crw_block_decoder::decode_blocks(std::span<std::uint16_t> samples) {
    bit_cursor bits = m_segment.resume(samples.size() / block_size * most_block_bytes);
    for (; !samples.empty(); samples = samples.subspan(block_size)) {
        block differences = read_block(bits);
        add_up(differences, samples.first(block_size));
    }
    m_segment.suspend(bits);
}

crw_block_decoder::block crw_block_decoder::read_block(bit_cursor& bits) const {
    block differences{};
    bit_cursor cursor = bits;
    differences[0] = read_next(cursor, m_codes.first).difference;
    for (std::size_t at = 1; at < block_size; ++at) {
        const run_and_difference read = read_next(cursor, m_codes.others);
        if (read.symbol == 0) // no more differences in this block
            break;
        at += read.symbol >> 4;
        if (at >= block_size)
            throw_damaged("the pixel data are damaged");
        differences[at] = read.difference;
    }
    bits = cursor;
    return differences;
}

void crw_block_decoder::add_up(block& differences, std::span<std::uint16_t> samples) {
    m_first_difference = wrapped(m_first_difference + differences[0]);
    differences[0] = m_first_difference;
    for (std::size_t at = 0; at < block_size; at += 2) {
        if (m_column == m_row_length) {
            m_column = 0;
            m_even = m_odd = 1U << (sample_bits - 1);
        }
        m_even = wrapped(m_even + differences[at]);
        m_odd = wrapped(m_odd + differences[at + 1]);
        samples[at] = m_even;
        samples[at + 1] = m_odd;
        m_all_bits |= m_even | m_odd;
        m_column += 2;
    }
}

} // namespace sdk_open
