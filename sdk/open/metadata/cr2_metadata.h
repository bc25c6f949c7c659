#pragma once

#include "sdk/open/metadata/picture_metadata.h"

#include <cstddef>
#include <span>

namespace sdk_open {

// The texts and fields that stand in a .cr2, which is a TIFF container itself. What cannot be read there is
// left out. Throws std::bad_alloc only.
[[nodiscard]] picture_metadata read_cr2_metadata(std::span<const std::byte> bytes);

} // namespace sdk_open
