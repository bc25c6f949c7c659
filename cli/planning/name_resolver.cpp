#include "cli/planning/name_resolver.h"

#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace {

fs::path absolute(const std::string& folder) {
    std::error_code error;
    fs::path path = fs::absolute(folder.empty() ? "." : folder, error);
    if (error)
        throw std::runtime_error("cannot find the working folder: " + error.message());
    return path;
}

} // namespace

std::string name_resolver::resolve(const std::string& name) {
    const fs::path path(name);
    return (resolve_folder(path.parent_path().string()) / path.filename()).string();
}

const fs::path& name_resolver::resolve_folder(const std::string& folder) {
    const auto [known, is_new] = m_folders.try_emplace(folder);
    if (is_new) {
        const fs::path path = absolute(folder);
        std::error_code error;
        known->second = fs::weakly_canonical(path, error);
        if (error)
            known->second = path.lexically_normal();
    }
    return known->second;
}
