#pragma once

#include <filesystem>
#include <string>
#include <unordered_map>

// Tells whether two names are one file without asking the system twice about a folder.
class name_resolver final {
public:
    // The same for all names of a file. The last component stays as it is, also where it is a link: two links
    // are two files to convert. Throws std::runtime_error where the working folder is gone that it begins in.
    [[nodiscard]] std::string resolve(const std::string& name);

private:
    const std::filesystem::path& resolve_folder(const std::string& folder);

    std::unordered_map<std::string, std::filesystem::path> m_folders;
};
