#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// What a symbol says about the bits of a value that follow its code.
enum class symbols_t {
    magnitudes,          // n: a difference of n bits; 16: the difference 32768, for which no bits follow
    runs_and_magnitudes, // the low half-byte as above, below 16; ff is a symbol without a value
};

// A code of up to 16 bits for each of some symbols, given as ITU-T T.81 (annex C) has it, ready to be looked
// up in the bits that come next.
class prefix_code final {
public:
    static constexpr unsigned longest_code = 16; // bits

    // A symbol, and how many bits its code takes, the value behind that, and both.
    struct entry {
        std::uint8_t whole_length;
        std::uint8_t code_length;
        std::uint8_t value_length;
        std::uint8_t symbol;
    };

    // There are counts[n - 1] codes of n bits; the symbols stand in the order of their codes. Throws
    // failure(damaged_picture) where these counts make no prefix code, there are not as many symbols, or one
    // of them says nothing.
    prefix_code(std::span<const std::uint8_t, longest_code> counts, std::span<const std::uint8_t> symbols,
                symbols_t meaning);

    // What the bits, the next one at the top, start with. whole_length is 0 for the few that take
    // find_any(): long codes, the difference 32768, and what is no code.
    [[nodiscard]] entry find_short(std::uint64_t bits) const noexcept {
        return m_short[static_cast<std::size_t>(bits >> (64 - short_code))];
    }

    // The same for every code. Throws failure(damaged_picture) where the bits start with none.
    [[nodiscard]] entry find_any(std::uint64_t bits) const;

private:
    // Codes of cameras are rarely longer. With 13 bits, two tables would crowd the first-level cache.
    static constexpr unsigned short_code = 11;

    // The codes of one length are successive numbers.
    struct code_range {
        unsigned first_code = 0;
        unsigned count = 0;
        std::size_t first_entry = 0;
    };

    void place_codes(std::span<const std::uint8_t, longest_code> counts);
    void fill_short_table(symbols_t meaning);

    std::vector<entry> m_entries; // in the order of their codes
    std::array<code_range, longest_code + 1> m_ranges{};
    std::array<entry, std::size_t{1} << short_code> m_short{};
};

} // namespace sdk_open
