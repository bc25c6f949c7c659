#pragma once

#include <cstdint>

namespace sdk_open {

// A pixel in the colours of the camera: red, green, blue and one value without meaning.
using camera_pixel = std::uint16_t[4];

// Takes the coloured fringes off that demosaicing leaves on fine detail: the difference of red and blue from
// green becomes the median of what it is in the pixel and its eight neighbours. Pixels at the border stay.
// Throws std::bad_alloc.
void smooth_colours(camera_pixel* pixels, unsigned width, unsigned height);

} // namespace sdk_open
