#include "cli/posix/begun_files.h"

#include "cli/posix/abandoned.h"
#include "platform/begun_file_name.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

bool is_begun(const std::string& name) {
    return name.starts_with(platform::begun_file_prefix) && name.ends_with(platform::begun_file_ending);
}

} // namespace

void remove_begun_files(const std::string& folder) {
    std::error_code error;
    fs::directory_iterator entries(folder.empty() ? "." : folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!is_begun(entries->path().filename().string()))
            continue;
        std::error_code ignored;
        if (const descriptor abandoned = take_abandoned(entries->path().string()); abandoned.is_open())
            fs::remove(entries->path(), ignored);
    }
}
