#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace sdk_open {

// The tones of a row of samples, from a table for the even columns and one for the odd ones.
class row_tones final {
public:
    row_tones(const std::uint16_t* samples, const std::array<std::span<const float>, 2>& tables) noexcept
        : m_samples(samples),
          m_tables{tables[0].data(), tables[1].data()},
          m_most(static_cast<std::uint16_t>(tables[0].size() - 1)) {}

    [[nodiscard]] float at(std::ptrdiff_t column) const noexcept {
        return look_up(m_tables[column % 2 == 0 ? 0 : 1], column);
    }

    // Copies this many pairs of columns, from this one on.
    void copy_pairs(std::ptrdiff_t column, std::ptrdiff_t pairs, float* tones) const noexcept {
        const float* const table = m_tables[column % 2 == 0 ? 0 : 1];
        const float* const next_table = m_tables[column % 2 == 0 ? 1 : 0];
        for (const float* const end = tones + 2 * pairs; tones != end; tones += 2, column += 2) {
            tones[0] = look_up(table, column);
            tones[1] = look_up(next_table, column + 1);
        }
    }

private:
    [[nodiscard]] float look_up(const float* table, std::ptrdiff_t column) const noexcept {
        return table[std::min(m_samples[column], m_most)];
    }

    const std::uint16_t* m_samples;
    std::array<const float*, 2> m_tables;
    std::uint16_t m_most;
};

} // namespace sdk_open
