#pragma once

#include "sdk/open/output_options.h"

#include <string>

// One raw file to convert. Names are bytes, as the system gives them.
struct job_t {
    std::string input;
    std::string output;
    bool makes_folders = false;           // those that the output lies in
    bool keeps_modification_time = false; // the output gets the input's
    sdk_open::compression_t compression = sdk_open::compression_t::none;
};
