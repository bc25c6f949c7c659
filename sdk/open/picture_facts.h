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

// While it lives, what EdsCreateImageRef finds out about a picture goes to the target, which must outlive it.
// There is one at a time.
class facts_collection final {
public:
    explicit facts_collection(picture_facts& target) noexcept { the_target = &target; }
    facts_collection(const facts_collection&) = delete;
    facts_collection& operator=(const facts_collection&) = delete;
    ~facts_collection() { the_target = nullptr; }

    // Null where nobody asks.
    [[nodiscard]] static picture_facts* inq_target() noexcept { return the_target; }

private:
    inline static picture_facts* the_target = nullptr;
};

} // namespace sdk_open
