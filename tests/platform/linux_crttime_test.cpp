// Local time by the system's zone files.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "time_zone.h"

namespace {

std::string Text_Of(const std::tm& local) {
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local);
    return text + std::string(local.tm_isdst > 0 ? " summer" : "");
}

TEST(ZoneFiles, LocalTimeBothWays) {
    // By another implementation's reading of the same data, but for the word "summer", which stands
    // where the clock is ahead of the standard time of today.
    constexpr struct {
        const char* why;
        const char* zone;
        LONG standard;  // seconds to UTC, positive to the west
        __time32_t seconds;
        const char* expected;
        __time64_t back = 0;  // where the way back leads to another instant
    } kRows[] = {
        {"winter", "Europe/Berlin", -3600, 1705320000, "2024-01-15 13:00"},
        {"first hour of the doubled one", "Europe/Berlin", -3600, 1729989000,
         "2024-10-27 02:30 summer", 1729992600},
        {"second hour of the doubled one", "Europe/Berlin", -3600, 1729992600, "2024-10-27 02:30"},
        {"winter is the exception by law", "Europe/Dublin", 0, 1705320000, "2024-01-15 12:00"},
        {"summer is the standard by law", "Europe/Dublin", 0, 1721041200,
         "2024-07-15 12:00 summer"},
        {"second of two equal hours, the first is the standard by law", "Europe/Dublin", 0,
         1729992600, "2024-10-27 01:30", 1729989000},
        {"hour before summer, by another standard time", "America/Juneau", 32400, 294226200,
         "1979-04-29 01:30"},
        {"one month is the exception", "Africa/Casablanca", 0, 1710936000, "2024-03-20 12:00"},
        {"the rest of the year", "Africa/Casablanca", 0, 1719831600, "2024-07-01 12:00 summer"},
        {"offset of 45 minutes", "Asia/Kathmandu", -20700, 1719771300, "2024-07-01 00:00"},
        {"another offset in former years", "Asia/Kathmandu", -20700, 504901740, "1985-12-31 23:59"},
        {"summer time of half an hour", "Australia/Lord_Howe", -37800, 1704020400,
         "2023-12-31 22:00 summer"},
        {"offset of 3 hours and a half", "America/St_Johns", 12600, 1719844200,
         "2024-07-01 12:00 summer"},
        {"summer time of former years", "America/Sao_Paulo", 10800, 1291212000,
         "2010-12-01 12:00 summer"},
        {"a local time before 1970", "America/New_York", 18000, 0, "1969-12-31 19:00"},
        {"last second of 32 bits", "America/New_York", 18000, 2147483647, "2038-01-18 22:14"},
        {"no such zone", "Nowhere/Land", 0, 1705320000, "2024-01-15 12:00"},
        {"a zone without a name", "", 0, 1705320000, "2024-01-15 12:00"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        rv_test::Set_Time_Zone(row.zone);
        std::tm local = {};
        ASSERT_EQ(_localtime32_s(&local, &row.seconds), 0);
        EXPECT_EQ(Text_Of(local), row.expected);
        EXPECT_EQ(_mktime64(&local) / 60, (row.back ? row.back : row.seconds) / 60);
        LONG standard = 1;
        EXPECT_EQ(_get_timezone(&standard), 0);
        EXPECT_EQ(standard, row.standard);
    }
}

TEST(ZoneFiles, ADayThatTheZoneLeftOut) {
    rv_test::Set_Time_Zone("Pacific/Apia");
    std::tm noon = {};
    noon.tm_year = 111;
    noon.tm_mon = 11;
    noon.tm_mday = 30;
    noon.tm_hour = 12;
    EXPECT_EQ(_mktime64(&noon), 1325196000);
}

}  // namespace
