#pragma once

#include <cstdint>

// The answer of a conversion. There are no others.
enum pixrerr_t : std::int32_t {
    pixrerr_ok = 0,            // the TIFF was written
    pixrerr_missing_file = 10, // there is no raw file
    pixrerr_failed = 11,       // no raw extension, or the conversion failed
};
