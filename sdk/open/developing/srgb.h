#pragma once

#include <cstdint>
#include <vector>

namespace sdk_open {

// The sRGB curve (IEC 61966-2-1), exact to the last bit, as a table from linear light to the coded value,
// both 0 to 65535.
[[nodiscard]] std::vector<std::uint16_t> make_srgb_curve();

} // namespace sdk_open
