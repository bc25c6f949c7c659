#include "cli/posix/folder_of.h"

#include <filesystem>

std::string folder_of(const std::string& file) {
    std::string folder = std::filesystem::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}
