// Puts the process into a time zone for as long as one lives. Not for tests with several threads.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace rv_test {

// `zone` is a name, the offset to UTC and the name in summer, such as "EST5EDT" or "IST-5:30"; the
// form without rules is the one that every platform reads, summer time then goes by American rules.
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        if (const char* before = std::getenv("TZ")) m_Before = before;
        Set(zone);
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() { Set(m_Before ? m_Before->c_str() : nullptr); }

private:
    static void Set(const char* zone) {
#if defined(_WIN32)
        // Not back to no zone at all: Wine 8 would read the system's, and keep its lack of summer
        // time for every zone behind it.
        _putenv_s("TZ", zone ? zone : "UTC0");
        _tzset();
#else
        if (zone) {
            setenv("TZ", zone, 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
#endif
    }

    std::optional<std::string> m_Before;
};

}  // namespace rv_test
