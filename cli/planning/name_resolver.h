#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

using folder_identity_t = std::pair<std::uint64_t, std::uint64_t>; // device and number

// Tells whether two names are one file, even where mounts or letter case give a folder several names, without
// asking the system twice about a folder.
class name_resolver final {
public:
    // The same for all names of a file. The last component stays as it is, even where it is a link: two links
    // are two files to convert. Throws std::runtime_error where the working folder that it begins in is gone.
    [[nodiscard]] std::string resolve(const std::string& name);

private:
    const std::filesystem::path& resolve_folder(const std::string& folder);

    // The path by which an existing folder was met first; below it, what is yet to be made.
    std::filesystem::path first_path_to(const std::filesystem::path& folder);

    std::unordered_map<std::string, std::filesystem::path> m_folders;
    std::map<folder_identity_t, std::filesystem::path> m_first_paths;
};
