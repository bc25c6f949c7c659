#pragma once

#include <string>
#include <utility>
#include <vector>

// What a folder and the folders below it hold.
struct folder_scan_t {
    std::vector<std::string> raw_files;                          // relative to the folder, in order of names
    std::vector<std::pair<std::string, std::string>> unreadable; // folders, as a whole or in part, and why
};

// Other files are left out, and so are links to folders: they may lead in circles. A link to a raw file
// counts as one.
[[nodiscard]] folder_scan_t scan_folder(const std::string& folder);
