#pragma once

#include "sdk/open/developing/finished_picture.h"
#include "sdk/open/identifying/raw_decoder.h"

#include <memory>

namespace sdk_open {

// The picture that a raw file becomes: mosaics of red, green and blue by our own demosaicing, all others as
// LibRaw makes them. The decoder must outlive it. Throws failure, also where LibRaw finds the pixel data
// damaged, and std::bad_alloc.
[[nodiscard]] std::unique_ptr<finished_picture> make_picture(raw_decoder& decoder);

} // namespace sdk_open
