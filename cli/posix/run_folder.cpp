#include "cli/posix/run_folder.h"

#include "cli/posix/abandoned.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = "raw-to-tiff-run-";

std::string temporary_folder() {
    const char* const named = std::getenv("TMPDIR");
    return named != nullptr && *named != '\0' ? named : "/tmp";
}

void remove_abandoned_runs(const std::string& folder) {
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!entries->path().filename().string().starts_with(prefix))
            continue;
        std::error_code ignored;
        if (const descriptor abandoned = take_abandoned(entries->path().string()); abandoned.is_open())
            fs::remove_all(entries->path(), ignored);
    }
}

[[noreturn]] void throw_errno(const std::string& folder) {
    throw std::system_error(errno, std::generic_category(), "cannot make a temporary folder in " + folder);
}

} // namespace

// Another run may take the new folder for an abandoned one before it is locked: it is gone then.
run_folder::run_folder() {
    const std::string parent = temporary_folder();
    remove_abandoned_runs(parent);
    do {
        m_path = parent + '/' + std::string(prefix) + "XXXXXX";
        if (::mkdtemp(m_path.data()) == nullptr)
            throw_errno(parent);
        m_lock = descriptor(::open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (m_lock.is_open())
            ::flock(m_lock.inq(), LOCK_EX);
    } while (!fs::exists(m_path));
}

run_folder::~run_folder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
    remove_abandoned_runs(fs::path(m_path).parent_path().string());
}

std::string run_folder::make_fresh(unsigned worker) const {
    const fs::path folder = fs::path(m_path) / std::to_string(worker);
    fs::remove_all(folder);
    fs::create_directory(folder);
    return folder.string();
}
