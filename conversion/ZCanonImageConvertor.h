#pragma once

#include "conversion/pixrerr.h"

class ZFileLocation;

// Drives the camera maker's SDK through one conversion.
class ZCanonImageConvertor final {
public:
    // Converts the raw file without a look at the locations first. A file that the SDK cannot find where it
    // lies is converted from a copy in the temporary folder, which is gone afterwards. On failure the TIFF
    // location holds what the SDK left there. std::bad_alloc passes through, with every handle released and
    // the SDK terminated.
    [[nodiscard]] static pixrerr_t convert(const ZFileLocation& raw_path, const ZFileLocation& tiff_path);
};
