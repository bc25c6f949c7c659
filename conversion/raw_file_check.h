#pragma once

#include "conversion/pixrerr.h"

class ZFileLocation;

// What can be said of a raw file before anything looks into it: pixrerr_missing_file where there is none,
// pixrerr_failed where its name ends in another way than those of Canon raw files, else pixrerr_ok.
[[nodiscard]] pixrerr_t check_raw_file(const ZFileLocation& file);
