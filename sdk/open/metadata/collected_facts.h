#pragma once

#include "sdk/open/metadata/picture_metadata.h"
#include "sdk/open/picture_facts.h"

#include <libraw/libraw.h>

namespace sdk_open {

// Sums up what is known of a picture that was identified. Throws std::bad_alloc only.
[[nodiscard]] picture_facts collect_facts(const libraw_data_t& data, const picture_metadata& metadata);

} // namespace sdk_open
