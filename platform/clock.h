#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <span>

namespace platform {

// A reading of the local wall clock, in human form: months from 1, days of the week from 0 for Sunday.
struct local_time_t {
    int year;
    int month;
    int day_of_week;
    int day;
    int hour;
    int minute;
    int second;
    int millisecond;
};

[[nodiscard]] local_time_t read_local_clock() noexcept;

// Seconds since 1970-01-01 00:00 UTC of a local broken-down time, which is normalised; tm_isdst below 0 lets
// the system work out daylight saving. Answers -1 for times before 1970 or after the year 3000.
[[nodiscard]] std::int64_t to_time_value(std::tm& local) noexcept;

// The local broken-down time of a count of seconds since 1970; all zero where the system knows none.
[[nodiscard]] std::tm to_local_time(std::int64_t time) noexcept;

// Writes a local broken-down time by a pattern of the C runtime's strftime, with a terminator. Answers the
// number of bytes before it; 0 where there is no room for all, or no text for what the pattern asks.
[[nodiscard]] std::size_t format_time(const std::tm& local, const char* pattern,
                                      std::span<char> target) noexcept;

} // namespace platform
