#pragma once

#include "sdk/open/metadata/metadata_field.h"

#include <cstddef>
#include <libraw/libraw.h>
#include <span>
#include <string>
#include <vector>

namespace sdk_open {

// What is told about a picture besides its pixels. Texts are empty where nothing is known.
struct picture_metadata {
    std::string description;
    std::string make;
    std::string model;
    std::string date_time; // "2009:07:21 13:03:20", the camera's own time
    std::string artist;
    std::string copyright;
    std::vector<metadata_field> exif;
    std::vector<metadata_field> gps;
};

// Collects it from the raw file's bytes and from what the decoder knows. What is damaged or absurd about it
// is left out; it never stops a conversion. Throws std::bad_alloc only.
[[nodiscard]] picture_metadata collect_metadata(std::span<const std::byte> bytes,
                                                const libraw_data_t& decoded);

} // namespace sdk_open
