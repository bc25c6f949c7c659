#include "tests/support/time_zone_setting.h"

#include <cstdlib>
#include <ctime>

time_zone_setting::time_zone_setting(const char* zone) {
    if (const char* const old = std::getenv("TZ"))
        m_old = old;
    ::setenv("TZ", zone, 1);
    ::tzset();
}

time_zone_setting::~time_zone_setting() {
    if (m_old)
        ::setenv("TZ", m_old->c_str(), 1);
    else
        ::unsetenv("TZ");
    ::tzset();
}
