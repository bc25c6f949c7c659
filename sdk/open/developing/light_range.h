#pragma once

#include <libraw/libraw.h>

namespace sdk_open {

// How many steps there are from no light, in the colour with the lowest black level, to the white level.
// Throws failure(damaged_picture) where the levels cannot be.
[[nodiscard]] unsigned light_range(const libraw_colordata_t& color);

// Whether the camera recorded the white balance of the shot.
[[nodiscard]] bool is_balance_recorded(const libraw_colordata_t& color) noexcept;

} // namespace sdk_open
