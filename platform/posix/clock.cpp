#include "platform/clock.h"

namespace platform {

namespace {

// 3000-12-31 23:59:59 UTC, the last moment that the Windows runtime converts; no platform goes beyond it.
constexpr std::int64_t last_time_value = 32535215999;

} // namespace

local_time_t read_local_clock() noexcept {
    std::timespec now{};
    static_cast<void>(std::timespec_get(&now, TIME_UTC));
    const std::tm local = to_local_time(now.tv_sec);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_wday, local.tm_mday,
            local.tm_hour,        local.tm_min,     local.tm_sec,  static_cast<int>(now.tv_nsec / 1'000'000)};
}

std::int64_t to_time_value(std::tm& local) noexcept {
    const std::int64_t time = std::mktime(&local);
    return time >= 0 && time <= last_time_value ? time : -1;
}

std::tm to_local_time(std::int64_t time) noexcept {
    std::tm local{};
    const std::time_t seconds = time;
    if (::localtime_r(&seconds, &local) == nullptr)
        return {}; // it may have filled some of the fields before it gave up
    return local;
}

std::size_t format_time(const std::tm& local, const char* pattern, std::span<char> target) noexcept {
    return std::strftime(target.data(), target.size(), pattern, &local);
}

} // namespace platform
