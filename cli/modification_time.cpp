#include "cli/modification_time.h"

#include <chrono>
#include <filesystem>
#include <system_error>

std::optional<double> inq_modification_time(const std::string& path) {
    using namespace std::chrono;
    std::error_code unknown;
    const auto time = std::filesystem::last_write_time(path, unknown);
    if (unknown)
        return {};
    const auto since_1970 = file_clock::to_sys(time).time_since_epoch();
    return static_cast<double>(floor<milliseconds>(since_1970).count()) / 1000;
}
