#pragma once

#include "sdk/open/metadata/picture_metadata.h"

#include <libraw/libraw.h>

namespace sdk_open {

// What the decoder knows of the camera, the lens and the exposure, as texts and fields. Throws std::bad_alloc
// only.
[[nodiscard]] picture_metadata read_decoder_metadata(const libraw_data_t& decoded);

} // namespace sdk_open
