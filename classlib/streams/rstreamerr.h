#pragma once

#include <cstdint>

// The error code of a read stream. 2, 3, 4 and 7 are not given by ZRStream itself.
enum rstreamerr_t : std::int32_t {
    rstreamerr_ok = 0,
    rstreamerr_end_of_data = 1,  // a binary read wanted more bytes than there were
    rstreamerr_read_failed = 2,  // a source could not read what it reads from
    rstreamerr_out_of_range = 5, // a number in the text does not fit its target
    rstreamerr_no_memory = 6,    // read_all found no memory to collect in
    rstreamerr_unsupported = 8,  // the stream cannot seek
};
