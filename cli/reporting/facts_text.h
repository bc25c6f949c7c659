#pragma once

#include "sdk/open/picture_facts.h"

#include <string>

// What is known of a picture, as a person reads it. Empty where it is unknown.

// "1/400 s", "2.5 s"
[[nodiscard]] std::string exposure_text(const sdk_open::picture_facts& facts);

// "f/5.6"
[[nodiscard]] std::string aperture_text(const sdk_open::picture_facts& facts);

// "35 mm"
[[nodiscard]] std::string focal_length_text(const sdk_open::picture_facts& facts);

// "640"
[[nodiscard]] std::string iso_text(const sdk_open::picture_facts& facts);

// "3504 x 2336"
[[nodiscard]] std::string size_text(const sdk_open::picture_facts& facts);

// "turned 90 degrees clockwise": what is done to the picture to make it upright
[[nodiscard]] std::string orientation_text(const sdk_open::picture_facts& facts);

// "red 2.05, green 1.00, blue 1.43"
[[nodiscard]] std::string white_balance_text(const sdk_open::picture_facts& facts);
