// The run-time library's local time.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <string>

#include "time_zone.h"

namespace {

std::string Local_Text(__time64_t seconds) {
    std::tm local = {};
    if (_localtime64_s(&local, &seconds) != 0) return local.tm_year == -1 ? "refused" : "filled";
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text + std::string(local.tm_isdst > 0 ? " summer" : "");
}

TEST(LocalTime, FollowsTheZoneOfTheProcess) {
    constexpr struct {
        const char* why;
        const char* zone;
        __time64_t seconds;
        const char* expected;
    } kRows[] = {
        {"first second", "UTC0", 0, "1970-01-01 00:00:00"},
        {"beyond 32 bits", "UTC0", 4102444800, "2100-01-01 00:00:00"},
        {"last second of all", "UTC0", 32535215999, "3000-12-31 23:59:59"},
        {"west, the day before", "EST5EDT", 0, "1969-12-31 19:00:00"},
        {"far east, the day after", "XYZ-14", 1700000000, "2023-11-15 12:13:20"},
        {"east by a half hour", "IST-5:30", 1700000000, "2023-11-15 03:43:20"},
        {"before the skipped hour", "EST5EDT", 1615705199, "2021-03-14 01:59:59"},
        {"behind the skipped hour", "EST5EDT", 1615705200, "2021-03-14 03:00:00 summer"},
        {"doubled hour, first time", "EST5EDT", 1636263000, "2021-11-07 01:30:00 summer"},
        {"doubled hour, second time", "EST5EDT", 1636266600, "2021-11-07 01:30:00"},
        {"second before the first", "XYZ-14", -1, "refused"},
        {"year 3002", "UTC0", 32566000000, "refused"},
    };
    for (const auto& row : kRows) {
        rv_test::Set_Time_Zone(row.zone);
        EXPECT_EQ(Local_Text(row.seconds), row.expected) << row.why;
    }
}

// Seconds of a local time "2021-03-14 02:30:00".
__time64_t Seconds_Of(const char* text) {
    std::tm local = {};
    local.tm_isdst = -1;
    EXPECT_EQ(std::sscanf(text, "%d-%d-%d %d:%d:%d", &local.tm_year, &local.tm_mon, &local.tm_mday,
                          &local.tm_hour, &local.tm_min, &local.tm_sec),
              6);
    local.tm_year -= 1900;
    local.tm_mon -= 1;
    return _mktime64(&local);
}

TEST(LocalTime, GoesBackToSeconds) {
    constexpr struct {
        const char* why;
        const char* zone;
        const char* local;
        __time64_t expected;
    } kRows[] = {
        {"first second", "UTC0", "1970-01-01 00:00:00", 0},
        {"winter", "EST5EDT", "2021-01-01 12:00:00", 1609520400},
        {"summer", "EST5EDT", "2021-07-01 12:00:00", 1625155200},
        {"last second before summer", "EST5EDT", "2021-03-14 01:59:59", 1615705199},
        {"skipped hour, as in summer", "EST5EDT", "2021-03-14 02:30:00", 1615703400},
        {"doubled hour, as in winter", "EST5EDT", "2021-11-07 01:30:00", 1636266600},
        {"beyond 32 bits", "IST-5:30", "2050-06-01 12:00:00", 2537677800},
        {"last second of all", "UTC0", "3000-12-31 23:59:59", 32535215999},
        {"too early in the east", "XYZ-14", "1970-01-01 00:00:00", -1},
        {"year 9999", "UTC0", "9999-12-31 23:59:59", -1},
    };
    for (const auto& row : kRows) {
        rv_test::Set_Time_Zone(row.zone);
        EXPECT_EQ(Seconds_Of(row.local), row.expected) << row.why;
    }
}

TEST(LocalTime, StandardTimeOfTheZone) {
    constexpr struct {
        const char* zone;
        LONG expected;  // positive to the west
    } kRows[] = {{"UTC0", 0}, {"EST5EDT", 18000}, {"CET-1CEST", -3600}, {"IST-5:30", -19800}};
    for (const auto& row : kRows) {
        rv_test::Set_Time_Zone(row.zone);
        LONG seconds = 1;
        EXPECT_EQ(_get_timezone(&seconds), 0);
        EXPECT_EQ(seconds, row.expected) << row.zone;
    }
}

}  // namespace
