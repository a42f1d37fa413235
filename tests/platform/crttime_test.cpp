// The run-time library's local time.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "time_zone.h"

namespace {

std::string Text_Of(const std::tm& local) {
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text + std::string(local.tm_isdst > 0 ? " summer" : "");
}

TEST(LocalTime, FollowsTheZoneOfTheProcessBothWays) {
    constexpr struct {
        const char* why;
        const char* zone;
        LONG standard;  // seconds to UTC, positive to the west
        __time64_t seconds;
        const char* expected;
        __time64_t back = -1;  // where the way back leads to another instant
    } kRows[] = {
        {"first second", "UTC0", 0, 0, "1970-01-01 00:00:00"},
        {"beyond 32 bits", "IST-5:30", -19800, 4102444800, "2100-01-01 05:30:00"},
        {"last second of all", "UTC0", 0, 32535215999, "3000-12-31 23:59:59"},
        {"west, the day before", "EST5EDT", 18000, 86400, "1970-01-01 19:00:00"},
        {"far east, the day after", "XYZ-14", -50400, 1700000000, "2023-11-15 12:13:20"},
        {"winter", "CET-1CEST", -3600, 1609520400, "2021-01-01 18:00:00"},
        {"summer", "EST5EDT", 18000, 1625155200, "2021-07-01 12:00:00 summer"},
        {"before the skipped hour", "EST5EDT", 18000, 1615705199, "2021-03-14 01:59:59"},
        {"behind the skipped hour", "EST5EDT", 18000, 1615705200, "2021-03-14 03:00:00 summer"},
        {"doubled hour, first time", "EST5EDT", 18000, 1636263000, "2021-11-07 01:30:00 summer",
         1636266600},
        {"doubled hour, second time", "EST5EDT", 18000, 1636266600, "2021-11-07 01:30:00"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        rv_test::Set_Time_Zone(row.zone);
        std::tm local = {};
        ASSERT_EQ(_localtime64_s(&local, &row.seconds), 0);
        EXPECT_EQ(Text_Of(local), row.expected);
        local.tm_isdst = -1;
        EXPECT_EQ(_mktime64(&local), row.back < 0 ? row.seconds : row.back);
        LONG standard = 1;
        EXPECT_EQ(_get_timezone(&standard), 0);
        EXPECT_EQ(standard, row.standard);
    }
}

TEST(LocalTime, WhatNoClockShows) {
    constexpr struct {
        const char* why;
        const char* zone;
        int local[5];  // year to minute
        __time64_t expected;
    } kRows[] = {
        {"skipped hour, as in summer", "EST5EDT", {2021, 3, 14, 2, 30}, 1615703400},
        {"too early in the east", "XYZ-14", {1970, 1, 1, 0, 0}, -1},
        {"year 9999", "UTC0", {9999, 12, 31, 23, 59}, -1},
    };
    for (const auto& row : kRows) {
        rv_test::Set_Time_Zone(row.zone);
        const auto& [year, month, day, hour, minute] = row.local;
        std::tm local = {};
        local.tm_year = year - 1900;
        local.tm_mon = month - 1;
        local.tm_mday = day;
        local.tm_hour = hour;
        local.tm_min = minute;
        local.tm_isdst = -1;
        EXPECT_EQ(_mktime64(&local), row.expected) << row.why;
    }
    for (const __time64_t seconds : {__time64_t{-1}, __time64_t{32566000000}}) {
        std::tm local = {};
        EXPECT_NE(_localtime64_s(&local, &seconds), 0) << seconds;
        EXPECT_EQ(local.tm_year, -1) << seconds;
        EXPECT_EQ(local.tm_isdst, -1) << seconds;
    }
}

}  // namespace
