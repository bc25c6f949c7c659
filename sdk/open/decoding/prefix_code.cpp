#include "sdk/open/decoding/prefix_code.h"

#include "sdk/open/failure.h"

#include <algorithm>

namespace sdk_open {
namespace {

constexpr unsigned bare_symbol = 0xff;
constexpr unsigned longest_difference = 16;

[[noreturn]] void throw_damaged_table() {
    throw_damaged("a code table of the pixel data is damaged");
}

} // namespace

prefix_code::prefix_code(std::span<const std::uint8_t, longest_code> counts,
                         std::span<const std::uint8_t> symbols, symbols_t meaning)
    : m_meaning(meaning), m_symbols(symbols.begin(), symbols.end()) {
    const auto says_nothing = [](unsigned symbol) { return symbol > longest_difference; };
    if (meaning == symbols_t::magnitudes && std::ranges::any_of(symbols, says_nothing))
        throw_damaged_table();
    place_codes(counts);
    fill_short_table();
}

// Gives out the code space, from its start and the short codes first.
void prefix_code::place_codes(std::span<const std::uint8_t, longest_code> counts) {
    unsigned next_code = 0;
    std::size_t placed = 0;
    for (unsigned length = 1; length <= longest_code; ++length) {
        const unsigned count = counts[length - 1];
        next_code *= 2;
        if (next_code + count > 1U << length)
            throw_damaged_table();
        m_ranges[length] = {next_code, count, placed};
        next_code += count;
        placed += count;
    }
    if (placed == 0 || placed != m_symbols.size())
        throw_damaged_table();
}

void prefix_code::fill_short_table() {
    std::size_t next = 0;
    for (unsigned length = 1; length < short_length; ++length) {
        const code_range& range = m_ranges[length];
        const std::size_t of_each_sign = std::size_t{1} << (short_length - length - 1);
        for (unsigned n = 0; n < range.count; ++n)
            for (const bool is_negative : {true, false}) {
                const coded_difference found =
                    describe(range.first_code + n, length, m_symbols[range.first_symbol + n], is_negative);
                std::fill_n(m_lengths.begin() + next, of_each_sign, found.length);
                std::fill_n(m_found_symbols.begin() + next, of_each_sign, found.symbol);
                std::fill_n(m_offsets.begin() + next, of_each_sign, found.offset);
                next += of_each_sign;
            }
    }
}

coded_difference prefix_code::describe(unsigned code, unsigned length, unsigned symbol,
                                       bool is_negative) const noexcept {
    unsigned size = symbol;
    unsigned difference = 0; // what is added to its own bits
    if (m_meaning == symbols_t::runs_and_magnitudes)
        size = symbol == bare_symbol ? 0 : symbol & 0xfU;
    else if (symbol == longest_difference) {
        size = 0;
        difference = 1U << (longest_difference - 1);
    }
    if (is_negative)
        difference -= (1U << size) - 1;
    return {static_cast<std::uint8_t>(length + size), static_cast<std::uint8_t>(symbol),
            static_cast<std::uint16_t>((difference - (code << size)) & 0xffffU)};
}

coded_difference prefix_code::find_long(std::uint64_t bits) const {
    for (unsigned length = 1; length <= longest_code; ++length) {
        const code_range& range = m_ranges[length];
        const auto code = static_cast<unsigned>(bits >> (64 - length));
        if (code - range.first_code < range.count) {
            const bool is_negative = (bits << length >> 63) == 0;
            return describe(code, length, m_symbols[range.first_symbol + code - range.first_code],
                            is_negative);
        }
    }
    throw_damaged("the pixel data are damaged");
}

} // namespace sdk_open
