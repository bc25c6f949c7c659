#include "cli/argument_checks.h"

#include "cli/planning/raw_name.h"
#include "cli/regular_file.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace argument_checks {

std::string not_empty(const std::string& name) {
    return name.empty() ? "the name is empty" : "";
}

std::string no_raw_name(const std::string& name) {
    return has_raw_name(name) ? "a raw file is never written to: " + name : "";
}

std::string no_other_file(const std::string& name) {
    const std::string lower = CLI::detail::to_lower(name);
    std::error_code unknown;
    const auto size = std::filesystem::file_size(name, unknown);
    return lower.ends_with(".tif") || lower.ends_with(".tiff") || unknown || size == 0
               ? ""
               : "it exists, and the name does not end in .tif or .tiff: " + name;
}

std::string page_name(const std::string& name) {
    return name.ends_with(".html") || name.ends_with(".htm") ? "" : "the name does not end in .html: " + name;
}

std::string regular_file(const std::string& name) {
    return may_be_regular_file(name) ? "" : "not a regular file: " + name;
}

std::string duration(const std::string& seconds) {
    double number = 0;
    const bool is_one = CLI::detail::lexical_cast(seconds, number) && number > 0 && std::isfinite(number);
    return is_one ? "" : "not a number of seconds above 0: " + seconds;
}

std::string size(const std::string& bytes) {
    std::int64_t number = 0;
    return CLI::detail::lexical_cast(bytes, number) && number > 0 ? "" : "not a size above 0";
}

} // namespace argument_checks
