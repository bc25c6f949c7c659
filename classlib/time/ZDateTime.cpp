#include "classlib/time/ZDateTime.h"

#include "platform/clock.h"

#include <array>
#include <cstdio>

namespace {

// Wraps where the difference does not fit: fields may hold any number.
std::int32_t difference(std::int32_t a, std::int32_t b) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

} // namespace

void ZDateTime::set_now() noexcept {
    const platform::local_time_t now = platform::read_local_clock();
    m_year = now.year;
    m_month = now.month;
    m_day = now.day;
    m_day_of_week = now.day_of_week;
    m_hour = now.hour;
    m_minute = now.minute;
    m_second = now.second;
    m_millisecond = now.millisecond;
    std::tm fields{};
    m_time = complete(fields);
}

void ZDateTime::set_time(std::uint32_t time) noexcept {
    m_time = time;
    const std::tm local = platform::to_local_time(m_time);
    m_year = local.tm_year + 1900;
    m_month = local.tm_mon + 1;
    m_day = local.tm_mday;
    m_day_of_week = local.tm_wday;
    m_hour = local.tm_hour;
    m_minute = local.tm_min;
    m_second = local.tm_sec;
    m_millisecond = 0;
}

bool ZDateTime::parse(const ZString& text, int style) {
    m_day_of_week = m_hour = m_minute = m_second = m_millisecond = 0;
    if (text.length() == 0)
        return false;
    int n_read = 0;
    if (style == 2)
        n_read = std::sscanf(text, "%d-%d-%d", &m_year, &m_month, &m_day);
    else if (style == 3)
        n_read = std::sscanf(text, "%d/%d/%d %d:%d", &m_day, &m_month, &m_year, &m_hour, &m_minute);
    else
        n_read = std::sscanf(text, "%d/%d/%d", &m_day, &m_month, &m_year);
    if (n_read < 3)
        return false;
    if (m_year < 50)
        m_year += 2000;
    else if (m_year < 100)
        m_year += 1900;
    std::tm fields{};
    m_time = complete(fields);
    return true;
}

void ZDateTime::to_tm(std::tm& out) const noexcept {
    out.tm_year = difference(m_year, 1900);
    out.tm_mon = difference(m_month, 1);
    out.tm_mday = m_day;
    out.tm_wday = m_day_of_week;
    out.tm_hour = m_hour;
    out.tm_min = m_minute;
    out.tm_sec = m_second;
}

ZString ZDateTime::inq_long_text() const {
    return format("%H:%M %A %d %B %Y");
}

ZString ZDateTime::inq_long_date() const {
    return format("%A %d %B %Y");
}

ZString ZDateTime::inq_short_date() const {
    return format("%d/%m/%Y");
}

ZString ZDateTime::inq_timestamp() const {
    return format("%a %d-%b-%Y %H:%M:%S");
}

ZString ZDateTime::inq_iso_date() const {
    return format("%Y-%m-%d");
}

ZString ZDateTime::format(const char* pattern) const {
    if (pattern == nullptr)
        return {};
    // The system adds what the record does not hold, day of the year and zone; what the record holds stays as
    // it is, also where it is no date.
    std::tm fields{};
    static_cast<void>(complete(fields));
    to_tm(fields);
    std::array<char, 128> text{};
    const std::size_t length = platform::format_time(fields, pattern, text);
    return ZString(text.data(), static_cast<int>(length));
}

// Writes the fields as the system normalises them; answers their time value.
std::int64_t ZDateTime::complete(std::tm& out) const noexcept {
    to_tm(out);
    out.tm_isdst = -1; // the record holds wall-clock time: the system knows whether daylight saving applies
    return platform::to_time_value(out);
}
