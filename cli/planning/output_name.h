#pragma once

#include "cli/options.h"
#include "cli/planning/input_names.h"

#include <string>

// A raw file, and where it lies in the tree that -d keeps.
struct input_place_t {
    std::string path;
    std::string place;
};

// The place of a file that is named: with -r the relative path where a list gives one that does not lead up,
// else the name alone.
[[nodiscard]] std::string place_of(const input_name_t& name, const options_t& options);

// The TIFF of a raw file: the one that is named, else IMG_1.CR2 becomes IMG_1.tif.
[[nodiscard]] std::string output_name(const input_place_t& input, const options_t& options);
