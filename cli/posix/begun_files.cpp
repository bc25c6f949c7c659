#include "cli/posix/begun_files.h"

#include "cli/posix/abandoned.h"
#include "sdk/open/system/begun_file_name.h"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>

namespace fs = std::filesystem;

namespace {

bool has_begun_name(std::string_view name) noexcept {
    using namespace sdk_open;
    const std::size_t size = begun_file_prefix.size() + begun_file_digit_count + begun_file_ending.size();
    if (name.size() != size || !name.starts_with(begun_file_prefix) || !name.ends_with(begun_file_ending))
        return false;
    const auto digits = name.substr(begun_file_prefix.size(), begun_file_digit_count);
    return digits.find_first_not_of(begun_file_digits) == std::string_view::npos;
}

bool is_regular_file(const sdk_open::file_descriptor& file) noexcept {
    struct stat found {};
    return ::fstat(file.inq(), &found) == 0 && S_ISREG(found.st_mode);
}

} // namespace

void remove_begun_files(const std::string& folder) {
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!has_begun_name(entries->path().filename().string()))
            continue;
        const auto abandoned = take_abandoned(entries->path().string());
        std::error_code ignored;
        if (abandoned.is_open() && is_regular_file(abandoned))
            fs::remove(entries->path(), ignored);
    }
}
