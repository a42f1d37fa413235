// The run-time library's local time.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <climits>
#include <ctime>
#include <string>

#include "time_zone.h"

namespace {

std::string Text_Of(const std::tm& local) {
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text + std::string(local.tm_isdst > 0 ? " summer" : "");
}

#if !defined(_WIN32)
// An hour ahead, but for a month of spring.
constexpr char kOneMonthBack[] = "<+01>-1<+00>0,M3.2.0/3,M4.2.0/2";
#endif

TEST(LocalTime, FollowsTheZoneOfTheProcessBothWays) {
    constexpr struct {
        const char* why;
        const char* zone;
        LONG standard;  // seconds to UTC, positive to the west
        __time64_t seconds;
        const char* expected;
        __time64_t back = 0;  // where the way back leads to another instant
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
#if !defined(_WIN32)
        // The system's zone files, by another implementation's reading of the same data, but for
        // the word "summer", which stands where the clock is ahead of the standard time of today.
        {"winter", "Europe/Berlin", -3600, 1705320000, "2024-01-15 13:00:00"},
        {"first hour of the doubled one", "Europe/Berlin", -3600, 1729989000,
         "2024-10-27 02:30:00 summer", 1729992600},
        {"second hour of the doubled one", "Europe/Berlin", -3600, 1729992600,
         "2024-10-27 02:30:00"},
        {"winter is the exception by law", "Europe/Dublin", 0, 1705320000, "2024-01-15 12:00:00"},
        {"summer is the standard by law", "Europe/Dublin", 0, 1721041200,
         "2024-07-15 12:00:00 summer"},
        {"second of two equal hours, the first is the standard by law", "Europe/Dublin", 0,
         1729992600, "2024-10-27 01:30:00", 1729989000},
        {"hour before summer, by another standard time", "America/Juneau", 32400, 294226200,
         "1979-04-29 01:30:00"},
        {"one month is the exception", kOneMonthBack, 0, 1710936000, "2024-03-20 12:00:00"},
        {"the rest of the year", kOneMonthBack, 0, 1719831600, "2024-07-01 12:00:00 summer"},
        {"offset of 45 minutes", "Asia/Kathmandu", -20700, 1719771300, "2024-07-01 00:00:00"},
        {"another offset in former years", "Asia/Kathmandu", -20700, 504901740,
         "1985-12-31 23:59:00"},
        {"summer time of half an hour", "Australia/Lord_Howe", -37800, 1704020400,
         "2023-12-31 22:00:00 summer"},
        {"offset of 3 hours and a half", "America/St_Johns", 12600, 1719844200,
         "2024-07-01 12:00:00 summer"},
        {"summer time of former years", "America/Sao_Paulo", 10800, 1291212000,
         "2010-12-01 12:00:00 summer"},
        {"before one summer time becomes another", "Europe/Kyiv", -7200, 646776000,
         "1990-07-01 00:00:00 summer"},
        {"a local time before 1970", "America/New_York", 18000, 0, "1969-12-31 19:00:00"},
        {"last second of 32 bits", "America/New_York", 18000, INT_MAX, "2038-01-18 22:14:07"},
        {"no such zone", "Nowhere/Land", 0, 1705320000, "2024-01-15 12:00:00"},
        {"a zone without a name", "", 0, 1705320000, "2024-01-15 12:00:00"},
#endif
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        rv_test::Set_Time_Zone(row.zone);
        std::tm local = {};
        if (row.seconds <= INT_MAX) {
            const auto seconds = static_cast<__time32_t>(row.seconds);
            ASSERT_EQ(_localtime32_s(&local, &seconds), 0);
            EXPECT_EQ(Text_Of(local), row.expected);
        }
        ASSERT_EQ(_localtime64_s(&local, &row.seconds), 0);
        local.tm_isdst = -1;  // which the form with 64 bits sets by another rule
        EXPECT_TRUE(std::string(row.expected).starts_with(Text_Of(local)));
        EXPECT_EQ(_mktime64(&local), row.back ? row.back : row.seconds);
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
#if !defined(_WIN32)
        {"a day that the zone left out", "Pacific/Apia", {2011, 12, 30, 12, 0}, 1325196000},
#endif
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
