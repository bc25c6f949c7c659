#include "cli/planning/folder_scan.h"

#include "cli/planning/raw_name.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <system_error>

namespace fs = std::filesystem;

namespace {

struct listing_t {
    std::vector<fs::path> folders;
    std::vector<fs::path> raw_files;
    std::error_code error; // of the folder, or of something in it that the system does not tell about
};

// The raw files in order of names; the folders in the opposite order, so that the last is the next.
listing_t list(const fs::path& folder) {
    listing_t found;
    fs::directory_iterator entries(folder, found.error);
    std::error_code entry_error;
    for (; !found.error && entries != fs::directory_iterator(); entries.increment(found.error)) {
        std::error_code unknown;
        const fs::path name = entries->path().filename();
        const fs::file_status status = entries->symlink_status(unknown);
        if (!fs::status_known(status))
            entry_error = unknown;
        else if (fs::is_directory(status))
            found.folders.push_back(name);
        else if (has_raw_name(name.string()) && !entries->is_directory(unknown))
            found.raw_files.push_back(name);
    }
    if (!found.error)
        found.error = entry_error;
    std::ranges::sort(found.folders, std::ranges::greater());
    std::ranges::sort(found.raw_files);
    return found;
}

} // namespace

folder_scan_t scan_folder(const std::string& folder) {
    folder_scan_t scan;
    std::vector<fs::path> waiting = {""}; // relative to the folder; the next one is the last
    while (!waiting.empty()) {
        const fs::path relative = waiting.back();
        waiting.pop_back();
        const fs::path path = relative.empty() ? fs::path(folder) : folder / relative;
        const listing_t found = list(path);
        if (found.error)
            scan.unreadable.emplace_back(path.string(), found.error.message());
        for (const fs::path& name : found.raw_files)
            scan.raw_files.push_back((relative / name).string());
        for (const fs::path& name : found.folders)
            waiting.push_back(relative / name);
    }
    return scan;
}
