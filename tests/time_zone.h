// Puts the process into a time zone.
#pragma once

#include <cstdlib>
#include <ctime>

namespace rv_test {

// `zone` is a name, the offset to UTC and the name in summer, such as "EST5EDT" or "IST-5:30": the
// form that every platform reads, with American rules for summer. Not while other threads run.
inline void Set_Time_Zone(const char* zone) {
#if defined(_WIN32)
    _putenv_s("TZ", zone);
    _tzset();
#else
    setenv("TZ", zone, 1);
#endif
}

}  // namespace rv_test
