#pragma once

namespace sdk_open {

// What turns a picture as the sensor saw it upright, in LibRaw's notation: the bits of libraw_image_sizes_t's
// flip. The first two are meant in the directions of the sensor's picture.
enum flip_t : unsigned { mirrored = 1, upside_down = 2, columns_become_rows = 4 };

} // namespace sdk_open
