#include "sdk/open/worker_count.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <thread>

namespace sdk_open {

unsigned inq_worker_count() noexcept {
    constexpr unsigned most_workers = 1024;
    const char* const setting = std::getenv("RAW_TO_TIFF_THREADS");
    const std::string_view digits = setting == nullptr ? "" : setting;
    unsigned count = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    if (error == std::errc() && end == digits.data() + digits.size() && count > 0)
        return std::min(count, most_workers);
    return std::max(std::thread::hardware_concurrency(), 1U);
}

} // namespace sdk_open
