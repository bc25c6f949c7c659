#pragma once

#include "cli/options.h"

#include <string>
#include <vector>

// A name that the user gave, and whether it came from the list.
struct input_name_t {
    std::string path;
    bool is_listed;
};

// The names of the command line and of the list, in their order; empty lines are left out. Throws
// std::system_error where the list cannot be read.
[[nodiscard]] std::vector<input_name_t> read_input_names(const options_t& options);
