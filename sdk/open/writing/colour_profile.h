#pragma once

#include <cstddef>
#include <vector>

namespace sdk_open {

// An ICC profile of sRGB, the same bytes every time. Throws std::bad_alloc.
[[nodiscard]] std::vector<std::byte> make_srgb_profile();

} // namespace sdk_open
