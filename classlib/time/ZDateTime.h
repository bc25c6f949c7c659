#pragma once

#include "classlib/strings/ZString.h"

#include <cstdint>
#include <ctime>

// A local date and time in calendar fields, together with the matching time value. The fields are open: the
// record does not keep them consistent by itself, and each operation says which of them it sets.
class ZDateTime final {
public:
    std::int32_t m_year = 0;        // in full, for example 2026
    std::int32_t m_month = 0;       // 1 to 12
    std::int32_t m_day = 0;         // 1 to 31
    std::int32_t m_day_of_week = 0; // 0 for Sunday to 6 for Saturday
    std::int32_t m_hour = 0;        // 0 to 23
    std::int32_t m_minute = 0;      // 0 to 59
    std::int32_t m_second = 0;      // 0 to 59
    std::int32_t m_millisecond = 0; // 0 to 999
    std::int64_t m_time = 0;        // seconds since 1970-01-01 00:00 UTC; -1 for a time that has no value

    // Sets every field from the local clock.
    void set_now() noexcept;

    // Sets every field from a count of seconds since 1970; the milliseconds become 0.
    void set_time(std::uint32_t time) noexcept;

    // Reads a date by its style: 2 for 2026-11-18; 3 for 18/11/2026 14:05, of which the time may be missing;
    // any other for 18/11/2026. Years below 50 are of this century, others below 100 of the last. Numbers are
    // not checked for their range, the day of the week stays 0. False when there are fewer than three
    // numbers: those read are stored all the same, and the time of day is 0.
    [[nodiscard]] bool parse(const ZString& text, int style);

    // Writes the fields into the C library's broken-down time, whose day of the year and daylight-saving flag
    // are left alone.
    void to_tm(std::tm& out) const noexcept;

    [[nodiscard]] ZString inq_long_text() const;  // 14:05 Wednesday 18 November 2026
    [[nodiscard]] ZString inq_long_date() const;  // Wednesday 18 November 2026
    [[nodiscard]] ZString inq_short_date() const; // 18/11/2026
    [[nodiscard]] ZString inq_timestamp() const;  // Wed 18-Nov-2026 14:05:09
    [[nodiscard]] ZString inq_iso_date() const;   // 2026-11-18

    // The text of a C library time format, up to 127 bytes; empty when it is longer, and where the library
    // has no text for what the format asks.
    [[nodiscard]] ZString format(const char* pattern) const;

private:
    [[nodiscard]] std::int64_t complete(std::tm& out) const noexcept;
};
