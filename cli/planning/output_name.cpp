#include "cli/planning/output_name.h"

#include <filesystem>

namespace fs = std::filesystem;

std::string place_of(const input_name_t& name, const options_t& options) {
    const fs::path path = fs::path(name.path).lexically_normal();
    const bool leads_down = path.is_relative() && !path.empty() && *path.begin() != "..";
    return options.is_recursive && name.is_listed && leads_down ? path.string() : path.filename().string();
}

std::string output_name(const input_place_t& input, const options_t& options) {
    if (!options.output.empty())
        return options.output;
    const bool is_beside = options.folder.empty();
    fs::path output = is_beside ? fs::path(input.path) : fs::path(options.folder) / input.place;
    return output.replace_extension(".tif").string();
}
