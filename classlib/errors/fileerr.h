#pragma once

// The kinds of ZFileException. The library itself raises only the last two; the others are for its callers.
enum fileerr_t {
    fileerr_missing = 0,
    fileerr_open_read = 1,
    fileerr_open_write = 2,
    fileerr_corrupt = 3,
    fileerr_no_location = 4,
    fileerr_rename = 5,
};
