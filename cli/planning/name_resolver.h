#pragma once

#include "sdk/open/system/system_calls.h"

#include <filesystem>
#include <map>
#include <string>
#include <unordered_map>

// Tells whether two names are one file, also where mounts or letter case give a folder several, without
// asking the system twice about a folder.
class name_resolver final {
public:
    // The same for all names of a file. The last component stays as it is, also where it is a link: two links
    // are two files to convert. Throws std::runtime_error where the working folder is gone that it begins in.
    [[nodiscard]] std::string resolve(const std::string& name);

private:
    const std::filesystem::path& resolve_folder(const std::string& folder);

    // The path by which an existing folder was met first; below it, what is yet to be made.
    std::filesystem::path first_path_to(const std::filesystem::path& folder);

    std::unordered_map<std::string, std::filesystem::path> m_folders;
    std::map<sdk_open::system_calls::file_identity, std::filesystem::path> m_first_paths;
};
