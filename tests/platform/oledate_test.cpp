// Numbers of OLE Automation dates against calendar forms, both ways.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace {

constexpr DATE kFirstDay = -657434;  // 1 January 100
constexpr DATE kLastDay = 2958465;   // 31 December 9999
constexpr int kSecondsInDay = 86400;

struct Form {
    int year, month, day, hour = 0, minute = 0, second = 0;
    bool operator==(const Form&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Form& form) {
    return out << form.year << '-' << form.month << '-' << form.day << ' ' << form.hour << ':'
               << form.minute << ':' << form.second;
}

Form Form_Of(const SYSTEMTIME& form) {
    return {form.wYear, form.wMonth, form.wDay, form.wHour, form.wMinute, form.wSecond};
}

// NaN when the form is refused.
DATE Number_Of(const Form& form) {
    SYSTEMTIME parts = {};
    parts.wYear = static_cast<WORD>(form.year);
    parts.wMonth = static_cast<WORD>(form.month);
    parts.wDay = static_cast<WORD>(form.day);
    parts.wHour = static_cast<WORD>(form.hour);
    parts.wMinute = static_cast<WORD>(form.minute);
    parts.wSecond = static_cast<WORD>(form.second);
    DATE number = 0;
    return SystemTimeToVariantTime(&parts, &number) != 0 ? number
                                                         : std::numeric_limits<DATE>::quiet_NaN();
}

Form Form_Of(DATE number) {
    SYSTEMTIME parts = {};
    return VariantTimeToSystemTime(number, &parts) == 1 ? Form_Of(parts) : Form{};
}

Form With_Seconds(Form date, int seconds) {
    return {date.year, date.month, date.day, seconds / 3600, seconds / 60 % 60, seconds % 60};
}

// Walks the calendar by hand, one day at a time.
struct Walker {
    Form date{100, 1, 1};
    DATE number = kFirstDay;
    int day_of_week = 5;  // 1 January 100 is a Friday
    int day_of_year = 1;

    void Step() {
        constexpr int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        const bool leap = date.year % 400 == 0 || (date.year % 4 == 0 && date.year % 100 != 0);
        number += 1;
        day_of_week = (day_of_week + 1) % 7;
        ++day_of_year;
        if (++date.day <= kLengths[date.month - 1] + (leap && date.month == 2)) return;
        date.day = 1;
        if (++date.month <= 12) return;
        date.month = 1;
        ++date.year;
        day_of_year = 1;
    }
};

TEST(OleDate, EveryDayOfTheRangeBothWays) {
    int seconds = 0;
    Walker walker;
    for (; walker.number <= kLastDay; walker.Step()) {
        ASSERT_EQ(Number_Of(walker.date), walker.number) << walker.date;
        UDATE parts = {};
        ASSERT_EQ(VarUdateFromDate(walker.number, 0, &parts), 0) << walker.date;
        ASSERT_EQ(Form_Of(parts.st), walker.date);
        ASSERT_EQ(parts.st.wDayOfWeek, walker.day_of_week) << walker.date;
        ASSERT_EQ(parts.wDayOfYear, walker.day_of_year) << walker.date;

        // Another time of day at every day, through all of them again and again.
        seconds = (seconds + 7919) % kSecondsInDay;
        const Form moment = With_Seconds(walker.date, seconds);
        ASSERT_EQ(Form_Of(Number_Of(moment)), moment);
    }
    EXPECT_EQ(walker.date, (Form{10000, 1, 1}));
}

TEST(OleDate, EverySecondOfADayAndTheNumbersBesideIt) {
    constexpr Form kDays[] = {{100, 1, 1},    {1582, 10, 15}, {1899, 12, 28}, {1899, 12, 29},
                              {1899, 12, 30}, {1899, 12, 31}, {2000, 2, 29},  {9999, 12, 31}};
    for (const Form& day : kDays) {
        const DATE midnight = Number_Of(day);
        for (int seconds = 0; seconds < kSecondsInDay; ++seconds) {
            const Form moment = With_Seconds(day, seconds);
            const DATE number = Number_Of(moment);
            const DATE fraction = static_cast<DATE>(seconds) / kSecondsInDay;
            ASSERT_NEAR(number, midnight < 0 ? midnight - fraction : midnight + fraction, 1e-9);
            DATE later = number, earlier = number;  // as magnitudes
            for (int step = 0; step < 4; ++step) {
                ASSERT_EQ(Form_Of(later), moment) << step;
                ASSERT_EQ(Form_Of(earlier), moment) << step;
                later = std::nextafter(later, midnight < 0 ? -1e9 : 1e9);
                // The number just nearer to zero than a whole negative one belongs to the end of
                // another day.
                if (seconds > 0 || midnight >= 0) {
                    earlier = std::nextafter(earlier, midnight < 0 ? 1e9 : -1e9);
                }
            }
        }
    }
}

TEST(OleDate, KnownNumbers) {
    constexpr struct {
        const char* why;
        DATE number;
        Form form;
        int day_of_week;  // -1: left open
    } kRows[] = {
        {"first day", -657434, {100, 1, 1}, 5},
        {"day before day 0, morning", -1.25, {1899, 12, 29, 6}, 5},
        {"day before day 0, evening", -1.75, {1899, 12, 29, 18}, 5},
        {"day 0", 0, {1899, 12, 30}, 6},
        {"day 0 under a minus sign", -0.5, {1899, 12, 30, 12}, 6},
        // Wine 8 leaves the day of week of the day before where rounding goes over midnight.
        {"end of a day of negative number", -1.9999999, {1899, 12, 30}, -1},
        {"end of a day", 36526.9999999, {2000, 1, 2}, -1},
        {"day 1", 1, {1899, 12, 31}, 0},
        {"not a leap year", 60, {1900, 2, 28}, 3},
        {"next day", 61, {1900, 3, 1}, 4},
        {"first second of 1970", 25569, {1970, 1, 1}, 4},
        {"leap day of a leap century", 36585, {2000, 2, 29}, 2},
        {"noon", 36526.5, {2000, 1, 1, 12}, 6},
        {"last second", 2958465 + 86399 / 86400.0, {9999, 12, 31, 23, 59, 59}, 5},
    };
    for (const auto& row : kRows) {
        SYSTEMTIME parts = {};
        EXPECT_EQ(VariantTimeToSystemTime(row.number, &parts), 1) << row.why;
        EXPECT_EQ(Form_Of(parts), row.form) << row.why;
        EXPECT_TRUE(row.day_of_week < 0 || parts.wDayOfWeek == row.day_of_week) << row.why;
        EXPECT_EQ(parts.wMilliseconds, 0) << row.why;
    }
}

// A form that is no moment is refused, or rolled over into one that reads differently: Windows does
// so with a day that its month lacks and with years of two digits. Callers convert both ways.
TEST(OleDate, NoFormOutsideOfTheCalendarSurvives) {
    constexpr struct {
        const char* why;
        Form form;
    } kRows[] = {
        {"year 0", {0, 1, 1}},
        {"year 99", {99, 12, 31, 23, 59, 59}},
        {"year 10000", {10000, 1, 1}},
        {"year -1", {-1, 1, 1}},
        {"month 0", {2000, 0, 1}},
        {"month 13", {2000, 13, 1}},
        {"month -1", {2000, -1, 1}},
        {"day 0", {2000, 1, 0}},
        {"30 February", {2000, 2, 30}},
        {"29 February of a common year", {2001, 2, 29}},
        {"29 February of a common century", {1900, 2, 29}},
        {"31 June", {2000, 6, 31}},
        {"31 September", {2000, 9, 31}},
        {"32 August", {2000, 8, 32}},
        {"day -1", {2000, 1, -1}},
        {"hour 24", {2000, 1, 1, 24}},
        {"hour -1", {2000, 1, 1, -1}},
        {"minute 60", {2000, 1, 1, 0, 60}},
        {"second 60", {2000, 1, 1, 0, 0, 60}},
        {"second -1", {2000, 1, 1, 0, 0, -1}},
    };
    for (const auto& row : kRows) {
        const DATE number = Number_Of(row.form);
        EXPECT_TRUE(std::isnan(number) || Form_Of(number) != row.form) << row.why;
    }
}

TEST(OleDate, NumbersOutsideOfTheRangeAreRefused) {
    constexpr struct {
        const char* why;
        DATE number;
    } kRows[] = {
        {"day before the first", -657435},
        {"far below", -1e300},
        {"day behind the last", 2958466},
        {"beyond 32 bits", 1e10},
        {"infinity", std::numeric_limits<DATE>::infinity()},
        {"minus infinity", -std::numeric_limits<DATE>::infinity()},
#if !defined(_WIN32)  // Wine 8 reads some moment from it
        {"not a number", std::numeric_limits<DATE>::quiet_NaN()},
#endif
    };
    for (const auto& row : kRows) {
        SYSTEMTIME form = {};
        UDATE parts = {};
        EXPECT_NE(VariantTimeToSystemTime(row.number, &form), 1) << row.why;
        EXPECT_NE(VarUdateFromDate(row.number, 0, &parts), 0) << row.why;
    }
}

}  // namespace
