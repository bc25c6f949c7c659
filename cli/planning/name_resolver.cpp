#include "cli/planning/name_resolver.h"

#include "sdk/open/system/system_calls.h"

#include <optional>
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

// Nothing where there is no such folder.
std::optional<folder_identity_t> identity_of_folder(const fs::path& path) {
    using namespace sdk_open::system_calls;
    file_status found;
    if (status_of_path(path.string(), found) != 0 || found.kind != file_kind_t::folder)
        return {};
    return folder_identity_t(found.identity.device, found.identity.number);
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
        const fs::path canonical = fs::weakly_canonical(path, error);
        known->second = first_path_to(error ? path.lexically_normal() : canonical);
    }
    return known->second;
}

fs::path name_resolver::first_path_to(const fs::path& folder) {
    fs::path existing = folder;
    auto identity = identity_of_folder(existing);
    while (!identity && existing.has_relative_path()) {
        existing = existing.parent_path();
        identity = identity_of_folder(existing);
    }
    if (!identity)
        return folder;
    const fs::path& first = m_first_paths.try_emplace(*identity, existing).first->second;
    return existing == folder ? first : first / folder.lexically_relative(existing);
}
