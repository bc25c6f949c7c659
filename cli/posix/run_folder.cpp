#include "cli/posix/run_folder.h"

#include "cli/posix/abandoned.h"
#include "platform/posix/temporary_folder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = "raw-to-tiff-run-";
constexpr std::string_view placeholders = "XXXXXX"; // mkdtemp replaces them

// The one thing in a run's folder, by which it differs from someone else's of such a name.
constexpr auto workers = "raw-to-tiff-workers";

bool is_letter_or_digit(char character) noexcept {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

bool has_run_name(std::string_view name) noexcept {
    return name.size() == prefix.size() + placeholders.size() && name.starts_with(prefix) &&
           std::ranges::all_of(name.substr(prefix.size()), is_letter_or_digit);
}

// As mkdtemp makes it.
bool is_own_private_folder(const sdk_open::file_descriptor& file) noexcept {
    struct stat found {};
    return ::fstat(file.inq(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() &&
           (found.st_mode & ACCESSPERMS) == S_IRWXU;
}

// With anything else in it the folder stays.
void remove_run(const fs::path& folder) {
    std::error_code ignored;
    fs::remove_all(folder / workers, ignored);
    fs::remove(folder, ignored);
}

void remove_abandoned_runs(const std::string& folder) {
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!has_run_name(entries->path().filename().string()))
            continue;
        const auto abandoned = take_abandoned(entries->path().string());
        if (abandoned.is_open() && is_own_private_folder(abandoned))
            remove_run(entries->path());
    }
}

[[noreturn]] void throw_errno(const std::string& folder) {
    throw std::system_error(errno, std::generic_category(), "cannot make a temporary folder in " + folder);
}

} // namespace

// Another run may take the new folder for an abandoned one before it is locked: it is gone then.
run_folder::run_folder() {
    const std::string parent = platform::temporary_folder();
    remove_abandoned_runs(parent);
    do {
        m_path = (parent + '/').append(prefix).append(placeholders);
        if (::mkdtemp(m_path.data()) == nullptr)
            throw_errno(parent);
        m_lock = sdk_open::file_descriptor(::open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (m_lock.is_open())
            ::flock(m_lock.inq(), LOCK_EX);
    } while (!fs::exists(m_path));
    fs::create_directory(fs::path(m_path) / workers);
}

run_folder::~run_folder() {
    remove_run(m_path);
    remove_abandoned_runs(fs::path(m_path).parent_path().string());
}

std::string run_folder::make_fresh(unsigned worker) const {
    const fs::path folder = fs::path(m_path) / workers / std::to_string(worker);
    fs::remove_all(folder);
    fs::create_directory(folder);
    return folder.string();
}
