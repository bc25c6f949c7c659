#include "cli/regular_file.h"

#include <filesystem>
#include <system_error>

bool may_be_regular_file(const std::string& name) {
    std::error_code unknown;
    const auto status = std::filesystem::status(name, unknown);
    return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}
