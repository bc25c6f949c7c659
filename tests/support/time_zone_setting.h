#pragma once

#include <optional>
#include <string>

// Puts the process into a time zone, given as in the variable TZ; undone at the end of its life.
class time_zone_setting final {
public:
    explicit time_zone_setting(const char* zone);
    time_zone_setting& operator=(time_zone_setting&&) = delete;
    ~time_zone_setting();

private:
    std::optional<std::string> m_old;
};
