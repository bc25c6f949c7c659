#include "tests/support/time_zone_setting.h"

#include <cstdlib>
#include <ctime>

time_zone_setting::time_zone_setting(const char* zone) {
    if (const char* const old = std::getenv("TZ"))
        m_old = old;
    ::_putenv_s("TZ", zone);
    ::_tzset();
}

time_zone_setting::~time_zone_setting() {
    ::_putenv_s("TZ", m_old ? m_old->c_str() : "");
    ::_tzset();
}
