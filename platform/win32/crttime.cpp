#include "crttime.h"

#include <cerrno>

namespace {

constexpr __time64_t kLastSecond = 32535215999;  // 31 December 3000 23:59:59 UTC

errno_t Refuse(std::tm* local) noexcept {
    if (local) {
        local->tm_sec = local->tm_min = local->tm_hour = -1;
        local->tm_mday = local->tm_mon = local->tm_year = -1;
        local->tm_wday = local->tm_yday = local->tm_isdst = -1;
    }
    errno = EINVAL;
    return EINVAL;
}

}  // namespace

__time64_t _time64(__time64_t* seconds) noexcept {
    const __time64_t now = std::time(nullptr);
    if (seconds) *seconds = now;
    return now;
}

errno_t _localtime64_s(std::tm* local, const __time64_t* seconds) noexcept {
    if (!local || !seconds || *seconds < 0 || *seconds > kLastSecond) return Refuse(local);
    const std::time_t instant = *seconds;
    // localtime_r alone goes on with the zone that it found first.
    tzset();
    return localtime_r(&instant, local) ? 0 : Refuse(local);
}
