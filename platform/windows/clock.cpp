#include "platform/clock.h"

#include <string_view>
#include <windows.h>

namespace platform {

namespace {

// A field, what it may hold, and the conversions that show it.
struct shown_field {
    std::string_view conversions;
    int value;
    int least;
    int most;
};

bool has_text(char conversion, const std::tm& local) noexcept {
    constexpr std::string_view without_field = "%ntzZ";
    const shown_field fields[] = {
        {"cCDFxyY", local.tm_year, -1900, 8099},
        {"gGV", local.tm_year, -1899, 8098}, // a week may belong to the year before or after
        {"bBcDFhmx", local.tm_mon, 0, 11},
        {"cdDeFx", local.tm_mday, 1, 31},
        {"cHIprRTX", local.tm_hour, 0, 23},
        {"cMrRTX", local.tm_min, 0, 59},
        {"cSrTX", local.tm_sec, 0, 59},
        {"aAcgGuUVwWx", local.tm_wday, 0, 6},
        {"gGjUVW", local.tm_yday, 0, 365},
    };
    bool is_known = without_field.find(conversion) != std::string_view::npos;
    for (const auto& [conversions, value, least, most] : fields) {
        if (conversions.find(conversion) == std::string_view::npos)
            continue;
        if (value < least || value > most)
            return false;
        is_known = true;
    }
    return is_known;
}

// Newer runtimes take a conversion that they do not know, and one of a field that cannot be, for a mistake
// that ends the process.
bool has_text(const char* pattern, const std::tm& local) noexcept {
    for (const char* at = pattern; *at != '\0'; ++at) {
        if (*at != '%')
            continue;
        ++at;
        if (*at == '#') // another form of the same conversion
            ++at;
        if (!has_text(*at, local))
            return false;
    }
    return true;
}

} // namespace

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

std::size_t format_time(const std::tm& local, const char* pattern, std::span<char> target) noexcept {
    return has_text(pattern, local) ? std::strftime(target.data(), target.size(), pattern, &local) : 0;
}

} // namespace platform
