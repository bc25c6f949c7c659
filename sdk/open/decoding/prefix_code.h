#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// What a symbol says about the difference that follows its code.
enum class symbols_t {
    magnitudes,          // n: it takes n bits; 16: it is 32768, and takes none
    runs_and_magnitudes, // the low half-byte as above, below 16; ff is a symbol without a difference
};

// A code and the difference after it. A difference of n bits is a number that starts with a one and stands
// for itself, or is negative and has its bits turned over (ITU-T T.81, F.2.2.1): 11 is 3, 10 is 2, 01 is -2
// and 00 is -3.
struct coded_difference {
    std::uint8_t length; // of both, in bits; at most 31
    std::uint8_t symbol;
    // The difference, as a 16-bit number that may overflow, is this and the number that both together make,
    // code and all. So one shift does for any length, either sign and no difference at all.
    std::uint16_t offset;

    // Takes the bits that come next, the first one at the top. Modulo 2^16; the other bits mean nothing.
    [[nodiscard]] unsigned value(std::uint64_t bits) const noexcept {
        return static_cast<unsigned>(bits >> (64 - length)) + offset;
    }
};

// A code of up to 16 bits for each of some symbols, given as ITU-T T.81 (annex C) has it, ready to be looked
// up in the bits that come next.
class prefix_code final {
public:
    static constexpr unsigned longest_code = 16;   // bits
    static constexpr unsigned longest_length = 31; // of a code and the difference after it

    // There are counts[n - 1] codes of n bits; the symbols stand in the order of their codes. Throws
    // failure(damaged_picture) where these counts make no prefix code, there are not as many symbols, or one
    // of them says nothing.
    prefix_code(std::span<const std::uint8_t, longest_code> counts, std::span<const std::uint8_t> symbols,
                symbols_t meaning);

    // Whether both read the same from any bits.
    [[nodiscard]] bool operator==(const prefix_code& other) const = default;

    // What the bits start with, the next one at the top; at least longest_length must be there. Throws
    // failure(damaged_picture) where they start with no code.
    [[nodiscard]] coded_difference find(std::uint64_t bits) const {
        const auto index = static_cast<std::size_t>(bits >> (64 - short_length));
        if (m_lengths[index] == 0) [[unlikely]]
            return find_long(bits);
        return {m_lengths[index], m_found_symbols[index], m_offsets[index]};
    }

private:
    // The bits that are looked up at once: a code and, for the sign, the first bit after it. Longer ones are
    // rare in pictures, and with 13 bits two tables would crowd the first-level cache.
    static constexpr unsigned short_length = 11;

    // The codes of one length are successive numbers.
    struct code_range {
        unsigned first_code = 0;
        unsigned count = 0;
        std::size_t first_symbol = 0;

        [[nodiscard]] bool operator==(const code_range& other) const = default;
    };

    void place_codes(std::span<const std::uint8_t, longest_code> counts);
    void fill_short_table();
    [[nodiscard]] coded_difference find_long(std::uint64_t bits) const;
    [[nodiscard]] coded_difference describe(unsigned code, unsigned length, unsigned symbol,
                                            bool is_negative) const noexcept;

    symbols_t m_meaning;
    std::vector<std::uint8_t> m_symbols; // in the order of their codes
    std::array<code_range, longest_code + 1> m_ranges{};
    // What is looked up. An array for each member, so that the length, for which the next code waits, comes
    // with a load of its own.
    template <typename T>
    using table = std::array<T, std::size_t{1} << short_length>;
    table<std::uint8_t> m_lengths{}; // 0 for what is not short
    table<std::uint8_t> m_found_symbols{};
    table<std::uint16_t> m_offsets{};
};

} // namespace sdk_open
