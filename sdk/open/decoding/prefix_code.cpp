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

unsigned value_length(unsigned symbol, symbols_t meaning) {
    if (meaning == symbols_t::runs_and_magnitudes)
        return symbol == bare_symbol ? 0 : symbol & 0xfU;
    if (symbol > longest_difference)
        throw_damaged_table();
    return symbol == longest_difference ? 0 : symbol;
}

} // namespace

prefix_code::prefix_code(std::span<const std::uint8_t, longest_code> counts,
                         std::span<const std::uint8_t> symbols, symbols_t meaning) {
    place_codes(counts);
    if (m_entries.size() != symbols.size())
        throw_damaged_table();
    for (std::size_t at = 0; at < symbols.size(); ++at) {
        entry& placed = m_entries[at];
        placed.symbol = symbols[at];
        placed.value_length = static_cast<std::uint8_t>(value_length(symbols[at], meaning));
        placed.whole_length = static_cast<std::uint8_t>(placed.code_length + placed.value_length);
    }
    fill_short_table(meaning);
}

// Gives out the code space, from its start and the short codes first. The code that is all ones may be one.
void prefix_code::place_codes(std::span<const std::uint8_t, longest_code> counts) {
    unsigned next_code = 0;
    for (unsigned length = 1; length <= longest_code; ++length) {
        const unsigned count = counts[length - 1];
        next_code <<= 1;
        if (next_code + count > 1U << length)
            throw_damaged_table();
        m_ranges[length] = {next_code, count, m_entries.size()};
        m_entries.insert(m_entries.end(), count, {0, static_cast<std::uint8_t>(length), 0, 0});
        next_code += count;
    }
    if (m_entries.empty())
        throw_damaged_table();
}

void prefix_code::fill_short_table(symbols_t meaning) {
    for (unsigned length = 1; length <= short_code; ++length) {
        const code_range& range = m_ranges[length];
        const std::size_t copies = std::size_t{1} << (short_code - length);
        for (unsigned n = 0; n < range.count; ++n) {
            const entry& found = m_entries[range.first_entry + n];
            if (meaning == symbols_t::runs_and_magnitudes || found.symbol != longest_difference)
                std::fill_n(m_short.begin() + (range.first_code + n) * copies, copies, found);
        }
    }
}

prefix_code::entry prefix_code::find_any(std::uint64_t bits) const {
    for (unsigned length = 1; length <= longest_code; ++length) {
        const code_range& range = m_ranges[length];
        const auto code = static_cast<unsigned>(bits >> (64 - length));
        if (code - range.first_code < range.count)
            return m_entries[range.first_entry + code - range.first_code];
    }
    throw_damaged("the pixel data are damaged");
}

} // namespace sdk_open
