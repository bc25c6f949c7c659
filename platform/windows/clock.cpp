#include "platform/clock.h"

#include <windows.h>

namespace platform {

local_time_t read_local_clock() noexcept {
    SYSTEMTIME now{};
    ::GetLocalTime(&now);
    return {now.wYear, now.wMonth,  now.wDayOfWeek, now.wDay,
            now.wHour, now.wMinute, now.wSecond,    now.wMilliseconds};
}

std::int64_t to_time_value(std::tm& local) noexcept {
    return ::_mktime64(&local);
}

std::tm to_local_time(std::int64_t time) noexcept {
    const std::tm* const local = ::_localtime64(&time);
    return local != nullptr ? *local : std::tm{};
}

} // namespace platform
