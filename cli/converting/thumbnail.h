#pragma once

#include <string>

// A small JPEG of a TIFF that was written, as base64 text of at most 32 KiB. Empty where none can be made.
[[nodiscard]] std::string make_thumbnail(const std::string& tiff);
