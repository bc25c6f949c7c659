#include "sdk/open/developing/tone_tables.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace sdk_open {

tone_tables::tone_tables(const std::array<cfa_position_levels, positions>& levels, std::uint16_t most) {
    for (unsigned position = 0; position < positions; ++position) {
        const auto [black, gain] = levels[position];
        std::vector<float>& table = m_tables[position];
        table.reserve(std::size_t{most} + 1);
        for (unsigned sample = 0; sample <= most; ++sample) {
            const double light = std::clamp((sample - black) * gain, -tone_offset, 1.0);
            table.push_back(static_cast<float>(std::cbrt(light + tone_offset)));
        }
    }
}

} // namespace sdk_open
