#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// Light, 0 to 1, is demosaiced as tones that are spaced about as the eye sees them: an error then weighs the
// same in the shadows as in the highlights, and so does the noise of the light itself. A tone is
// the cube root of (light + tone_offset), which two multiplications take back; the offset keeps the noise
// around black. Anything from a quarter of it to twice as much makes no picture better or worse.
constexpr double tone_offset = 0.002;

// The levels at one position of the 2x2 pattern.
struct cfa_position_levels {
    double black; // the sample that stands for no light
    double gain;  // what makes a sample's distance from black light: 1 is where the first channel clips
};

// What samples become before they are demosaiced: one table for each position of the 2x2 pattern of the CFA.
class tone_tables final {
public:
    static constexpr unsigned positions = 4; // row % 2 * 2 + column % 2

    // Samples at or above most are the same tone. Throws std::bad_alloc.
    tone_tables(const std::array<cfa_position_levels, positions>& levels, std::uint16_t most);

    [[nodiscard]] std::span<const float> inq_table(unsigned position) const noexcept {
        return m_tables[position];
    }

private:
    std::array<std::vector<float>, positions> m_tables;
};

} // namespace sdk_open
