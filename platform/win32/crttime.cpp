#include "crttime.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>

namespace {

constexpr __time64_t kLastSecond = 32535215999;  // 31 December 3000 23:59:59 UTC
constexpr std::time_t kSecondsInDay = 86400;

errno_t Refuse(std::tm* local) noexcept {
    if (local) {
        local->tm_sec = local->tm_min = local->tm_hour = -1;
        local->tm_mday = local->tm_mon = local->tm_year = -1;
        local->tm_wday = local->tm_yday = local->tm_isdst = -1;
    }
    errno = EINVAL;
    return EINVAL;
}

// The zone as it is around today. Offsets are seconds from UTC, positive to the east.
struct Zone {
    std::time_t standard;
    bool named_by_winter;  // its law calls winter the exception, and summer the standard time
};

Zone Read_Zone(std::time_t now) noexcept {
    std::tm today;
    if (!localtime_r(&now, &today)) return {};
    // The other part of the year, be it as short as a month.
    for (std::time_t days = 10; days < 366; days += 10) {
        const std::time_t instant = now + days * kSecondsInDay;
        std::tm other;
        if (!localtime_r(&instant, &other) || other.tm_isdst == today.tm_isdst) continue;
        const bool ahead = today.tm_gmtoff > other.tm_gmtoff;
        return {std::min(today.tm_gmtoff, other.tm_gmtoff), ahead != (today.tm_isdst > 0)};
    }
    return {today.tm_gmtoff, false};
}

// Reading a zone takes dozens of conversions, so a thread keeps what it read for the day.
class ZoneOfToday {
public:
    const Zone& Get() noexcept {
        const std::time_t now = std::time(nullptr);
        const char* const name = std::getenv("TZ");
        if (now / kSecondsInDay != m_Day || !Has_Name(name)) {
            m_Zone = Read_Zone(now);
            m_Day = now / kSecondsInDay;
            Set_Name(name);
        }
        return m_Zone;
    }

private:
    bool Has_Name(const char* name) const noexcept {
        return m_Named == (name != nullptr) && (!name || std::strcmp(m_Name, name) == 0);
    }
    // A name without room here is read anew at each call.
    void Set_Name(const char* name) noexcept {
        m_Named = name != nullptr;
        if (name && std::strlen(name) < sizeof m_Name) {
            std::strcpy(m_Name, name);
        } else {
            m_Name[0] = '\0';
            if (name) m_Day = -1;
        }
    }

    std::time_t m_Day = -1;
    bool m_Named = false;
    char m_Name[64] = "";
    Zone m_Zone = {};
};

const Zone& Zone_Of_Today() noexcept {
    static thread_local ZoneOfToday zone;
    return zone.Get();
}

std::time_t Offset_At(std::time_t instant) noexcept {
    std::tm local;
    return localtime_r(&instant, &local) ? local.tm_gmtoff : 0;
}

// Whether `clock`, counted as if it were UTC, is surely shown at the given offset. A look at where
// it would be in standard time tells for nearly all: it is there, or an hour ahead of it.
bool Has_Plain_Offset(std::time_t clock, std::time_t& offset) noexcept {
    const std::time_t standard = -timezone;  // a guess: the system has several minds about it
    const std::time_t instant = clock - standard;
    std::tm local;
    if (!localtime_r(&instant, &local)) return false;
    offset = local.tm_gmtoff;
    const std::time_t ahead = offset - standard;
    if (local.tm_isdst <= 0) return ahead == 0;
    // From one summer offset to another it is not the same there.
    return ahead > 0 && ahead <= 3600 && Offset_At(clock - offset) == offset;
}

// The instant at which the clock shows `clock`.
std::time_t Instant_Of(std::time_t clock) noexcept {
    std::time_t offset;
    if (Has_Plain_Offset(clock, offset)) return clock - offset;
    // No zone is further from UTC than a day, so these two are the offsets that it can be.
    const std::time_t before = Offset_At(clock - kSecondsInDay);
    const std::time_t after = Offset_At(clock + kSecondsInDay);
    const std::time_t instant = clock - std::min(before, after);
    return before == after || clock - Offset_At(instant) == instant
               ? instant
               : clock - std::max(before, after);
}

// The fields as if they were UTC.
std::time_t Seconds_On_Clock(const std::tm& clock) noexcept {
    using namespace std::chrono;
    const sys_days day = year(clock.tm_year + 1900) /
                         month(static_cast<unsigned>(clock.tm_mon + 1)) /
                         std::chrono::day(static_cast<unsigned>(clock.tm_mday));
    return day.time_since_epoch().count() * kSecondsInDay + clock.tm_hour * 3600 +
           clock.tm_min * 60 + clock.tm_sec;
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

errno_t _localtime32_s(std::tm* local, const __time32_t* seconds) noexcept {
    if (!seconds) return Refuse(local);
    const __time64_t wide = *seconds;
    if (const errno_t error = _localtime64_s(local, &wide); error != 0) return error;
    const Zone& zone = Zone_Of_Today();
    if (zone.named_by_winter) local->tm_isdst = local->tm_gmtoff > zone.standard;
    return 0;
}

__time64_t _mktime64(std::tm* local) noexcept {
    tzset();
    const std::time_t instant = Instant_Of(Seconds_On_Clock(*local));
    if (instant >= 0 && instant <= kLastSecond) return instant;
    errno = EINVAL;
    return -1;
}

errno_t _get_timezone(LONG* seconds) noexcept {
    if (!seconds) return EINVAL;
    tzset();
    *seconds = static_cast<LONG>(-Zone_Of_Today().standard);
    return 0;
}
