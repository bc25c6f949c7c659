#pragma once

#include "conversion/pixrerr.h"

// What the program answers, apart from the library's own codes for a single file.
enum exit_code_t : int {
    exit_converted = 0,
    exit_bad_inputs = 1,
    exit_wrong_usage = 2,
    exit_system_failed = 3,
    exit_failed = pixrerr_failed,
    exit_interrupted = 130,
};
