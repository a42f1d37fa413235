// Numbers of OLE Automation dates against calendar forms, both ways.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "display_text.h"

namespace {

using rv_test::Form;
using rv_test::Form_Of;
using rv_test::kRefused;

// 1e300 when the form is refused.
DATE Number_Of(const Form& form) {
    SYSTEMTIME moment = rv_test::Moment_Of(form);
    DATE number = 0;
    return SystemTimeToVariantTime(&moment, &number) != 0 ? number : 1e300;
}

Form At_Second(const Form& date, int seconds) {
    return {date[0], date[1], date[2], seconds / 3600, seconds / 60 % 60, seconds % 60};
}

int Length_Of(int year, int month) {
    constexpr int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
    return kLengths[month - 1] + (leap && month == 2);
}

TEST(OleDate, EveryDayOfTheRangeBothWays) {
    DATE number = -657434;
    int day_of_week = 5;  // 1 January 100 is a Friday
    int seconds = 0;
    for (int year = 100; year <= 9999; ++year) {
        for (int month = 1, day_of_year = 1; month <= 12; ++month) {
            const int length = Length_Of(year, month);
            for (int day = 1; day <= length; ++day, ++day_of_year, ++number) {
                const Form date = {year, month, day};
                ASSERT_EQ(Number_Of(date), number);
                UDATE parts = {};
                ASSERT_EQ(VarUdateFromDate(number, 0, &parts), S_OK) << number;
                ASSERT_EQ(Form_Of(parts.st), date);
                ASSERT_EQ(parts.st.wDayOfWeek, day_of_week) << number;
                ASSERT_EQ(parts.wDayOfYear, day_of_year) << number;
                day_of_week = (day_of_week + 1) % 7;
                // Another time of day at every day, through all of them again and again.
                seconds = (seconds + 7919) % 86400;
                ASSERT_EQ(Form_Of(Number_Of(At_Second(date, seconds))), At_Second(date, seconds));
            }
            // Refused, or rolled over into a form that reads differently, as Windows does.
            const Form beyond = {year, month, length + 1};
            ASSERT_NE(Form_Of(Number_Of(beyond)), beyond);
        }
    }
    EXPECT_EQ(number, 2958466);
}

TEST(OleDate, EverySecondOfADayAndTheNumbersBesideIt) {
    for (const Form& day : {Form{100, 1, 1}, Form{1899, 12, 28}, Form{1899, 12, 29},
                            Form{1899, 12, 30}, Form{1899, 12, 31}, Form{9999, 12, 31}}) {
        const DATE midnight = Number_Of(day);
        const DATE sign = midnight < 0 ? -1 : 1;
        for (int seconds = 0; seconds < 86400; ++seconds) {
            const Form moment = At_Second(day, seconds);
            DATE later = Number_Of(moment), earlier = later;
            ASSERT_NEAR(later, midnight + sign * seconds / 86400, 1e-9);
            for (int step = 0; step < 4; ++step) {
                ASSERT_EQ(Form_Of(later), moment) << step;
                ASSERT_EQ(Form_Of(earlier), moment) << step;
                later = std::nextafter(later, sign * 1e9);
                // Just nearer to zero than a whole negative number is the end of another day.
                if (seconds > 0 || sign > 0) earlier = std::nextafter(earlier, sign * -1e9);
            }
        }
    }
}

TEST(OleDate, KnownNumbers) {
    constexpr struct {
        const char* why;
        DATE number;
        Form form;
    } kRows[] = {
        {"day before the first", -657435, kRefused},
        {"morning of a negative number", -1.25, {1899, 12, 29, 6}},
        {"evening of a negative number", -1.75, {1899, 12, 29, 18}},
        {"end of a day of negative number", -1.9999999, {1899, 12, 30}},
        {"day 0 under a minus sign", -0.5, {1899, 12, 30, 12}},
        {"day 0", 0, {1899, 12, 30}},
        {"first second of 1970", 25569, {1970, 1, 1}},
        {"noon of a leap day", 36585.5, {2000, 2, 29, 12}},
        {"day behind the last", 2958466, kRefused},
        {"beyond 32 bits", -1e10, kRefused},
        {"infinity", std::numeric_limits<DATE>::infinity(), kRefused},
#if !defined(_WIN32)  // Wine 8 reads some moment from it
        {"not a number", std::numeric_limits<DATE>::quiet_NaN(), kRefused},
#endif
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(Form_Of(row.number), row.form) << row.why;
        UDATE parts = {};
        EXPECT_EQ(VarUdateFromDate(row.number, 0, &parts) == S_OK, row.form != kRefused) << row.why;
    }
}

}  // namespace
