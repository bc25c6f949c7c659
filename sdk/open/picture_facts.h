#pragma once

#include <array>
#include <string>

namespace sdk_open {

// What a person asks about a raw picture. Texts, of at most 200 bytes, are empty and numbers 0 where nothing
// is known.
struct picture_facts {
    std::string camera; // "Canon EOS 30D"
    std::string lens;
    std::string date_time; // "2009-07-21 13:03:20", the camera's own time
    unsigned width = 0;    // of the upright picture, in pixels
    unsigned height = 0;
    unsigned orientation = 0;    // how the camera was held, as EXIF counts it: 1 upright, 6 and 8 sideways
    double exposure_seconds = 0; // 0.0025
    double aperture = 0;         // 22 for f/22
    double focal_length = 0;     // mm
    unsigned iso = 0;
    std::array<double, 3> white_balance{}; // the factors of red, green and blue as shot, green's 1
};

// About the picture that EdsCreateImageRef identified last; nothing is known where there was none since the
// last EdsInitializeSDK. Stays valid until the next one of either.
[[nodiscard]] const picture_facts& inq_picture_facts() noexcept;

} // namespace sdk_open
