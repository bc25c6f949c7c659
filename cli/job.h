#pragma once

#include "sdk/open/output_options.h"

#include <string>

enum class task_t {
    convert,
    describe, // nothing is written
};

// What to do where the output exists.
enum class existing_t { error, skip, overwrite, newer };

// What to do with one raw file. Names are bytes, as the system gives them.
struct job_t {
    std::string input;
    std::string output; // empty where none is written
    task_t task = task_t::convert;
    existing_t existing = existing_t::overwrite;
    bool makes_folders = false;           // those that the output lies in
    bool keeps_modification_time = false; // the output gets the input's
    bool has_thumbnail = false;           // the result comes with one
    sdk_open::compression_t compression = sdk_open::compression_t::none;
};
