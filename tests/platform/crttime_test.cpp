// The run-time library's clock and local time.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <ctime>
#include <string>

#include "time_zone.h"

namespace {

std::string Text_Of(const std::tm& local) {
    char text[64] = "";
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
        {"last second of 32 bits", "UTC0", 2147483647, "2038-01-19 03:14:07"},
        {"beyond 32 bits", "UTC0", 4102444800, "2100-01-01 00:00:00"},
        {"last second of all", "UTC0", 32535215999, "3000-12-31 23:59:59"},
        {"west, the day before", "EST5EDT", 0, "1969-12-31 19:00:00"},
        {"far west", "XYZ12", 1700000000, "2023-11-14 10:13:20"},
        {"far east, the day after", "XYZ-14", 1700000000, "2023-11-15 12:13:20"},
        {"east by a half hour", "IST-5:30", 1700000000, "2023-11-15 03:43:20"},
        {"west by a half hour", "NST3:30", 1700000000, "2023-11-14 18:43:20"},
        {"before the skipped hour", "EST5EDT", 1615705199, "2021-03-14 01:59:59"},
        {"behind the skipped hour", "EST5EDT", 1615705200, "2021-03-14 03:00:00 summer"},
        {"doubled hour, first time", "EST5EDT", 1636263000, "2021-11-07 01:30:00 summer"},
        {"doubled hour, second time", "EST5EDT", 1636266600, "2021-11-07 01:30:00"},
    };
    for (const auto& row : kRows) {
        const rv_test::TimeZone zone(row.zone);
        std::tm local = {};
        EXPECT_EQ(_localtime64_s(&local, &row.seconds), 0) << row.why;
        EXPECT_EQ(Text_Of(local), row.expected) << row.why;
    }
}

TEST(LocalTime, WhatItCannotExpressIsRefused) {
    constexpr struct {
        const char* why;
        __time64_t seconds;
    } kRows[] = {{"second before the first", -1},
                 {"far below", -4000000000},
                 {"year 3002", 32566000000},
                 {"largest", 0x7FFFFFFFFFFFFFFF}};
    for (const auto& row : kRows) {
        std::tm local = {};
        EXPECT_EQ(_localtime64_s(&local, &row.seconds), EINVAL) << row.why;
        EXPECT_EQ(local.tm_year, -1) << row.why;
        EXPECT_EQ(local.tm_isdst, -1) << row.why;
    }
}

TEST(Clock, AgreesWithTheSystems) {
    const std::time_t before = std::time(nullptr);
    __time64_t written = 0;
    const __time64_t now = _time64(&written);
    EXPECT_EQ(now, written);
    EXPECT_GE(now, before);
    EXPECT_LE(_time64(nullptr), std::time(nullptr));
}

}  // namespace
