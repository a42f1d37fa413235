#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "allocation_sweep.h"
#include "report_recorder.h"
#include "time_zone.h"

namespace {

using rv_test::FailingAllocation;
using rv_test::ReportRecorder;

static_assert(std::has_virtual_destructor_v<RVDateTime>);
static_assert(sizeof(RVDateTime) == 2 * sizeof(void*), "one pointer besides the virtual table's");

// 3 February 2001 04:05:06, counted by hand: 101 years of 365 days with 25 leap days behind
// 30 December 1899, less the 2 days to 1 January 1900, then 33 days of 2001.
constexpr DATE kMoment = 2 + 101 * 365 + 25 + 33 + (4 * 3600 + 5 * 60 + 6) / 86400.0;

// Status and number, to a fraction of a second: platforms differ in the last bit of a sum.
std::string Text_Of(const COleDateTime& value) {
    constexpr const char* kNames[] = {"valid", "invalid", "null"};
    char text[64];
    std::snprintf(text, sizeof text, "%s %.12g", kNames[value.m_status], value.m_dt);
    return text;
}

std::vector<unsigned int> Codes(ReportRecorder& reports) {
    std::vector<unsigned int> codes;
    for (const auto& [code, file] : reports.Take()) {
        EXPECT_EQ(file, "rvdatetm");
        codes.push_back(code);
    }
    return codes;
}

// What an object holds; `invalid` with a number that no other has when it holds nothing.
COleDateTime Held_By(RVDateTime& object) {
    COleDateTime value{-4711.5, COleDateTime::invalid};
    object.Get_Value(value);
    return value;
}

enum State { kValid, kInvalid, kNull, kNone, kStates };
constexpr const char* kStateNames[] = {"valid", "invalid", "null", "no held value"};
constexpr COleDateTime kHeld[] = {{kMoment, COleDateTime::valid},
                                  {2.25, COleDateTime::invalid},
                                  {2.25, COleDateTime::null},
                                  {-4711.5, COleDateTime::invalid}};

std::unique_ptr<RVDateTime> Make(State state) {
    ReportRecorder reports;
    if (state == kNone) {
        const FailingAllocation failing(0);
        auto object = std::make_unique<RVDateTime>();
        EXPECT_EQ(Codes(reports), std::vector{23u});
        return object;
    }
    COleDateTime value = kHeld[state];
    auto object = std::make_unique<RVDateTime>(value);
    EXPECT_EQ(Codes(reports), std::vector<unsigned int>());
    return object;
}

bool Set_Db(RVDateTime& object, const char* text) {
    RVString db_text(text);
    return object.Set_Db_Value(db_text);
}

std::string Yes_Or_No(bool result) {
    return result ? "true" : "false";
}

std::string Parts_Of(RVDateTime& object) {
    char text[80];
    std::snprintf(text, sizeof text, "%d-%d-%d ", object.Get_Year(), object.Get_Month(),
                  object.Get_Day());
    std::string parts = text;
    std::snprintf(text, sizeof text, "%d:%d:%d", object.Get_Hour(), object.Get_Minute(),
                  object.Get_Second());
    return parts + text;
}

// What becomes of an object: nothing, or it then holds the moment of its row, or it is `invalid`
// with its number as it was.
enum After { kAsBefore, kSet, kInvalidated };

struct Outcome {
    std::string result;
    std::vector<unsigned int> codes;
    After after = kAsBefore;
};

// The same with any held value, and code 18 without.
std::vector<Outcome> Any(const Outcome& outcome, const char* without = "false") {
    return {outcome, outcome, outcome, {without, {18}}};
}

TEST(DateTimeStates, EveryOperationInEveryState) {
    const struct {
        const char* name;
        std::string (*operation)(RVDateTime&);
        std::vector<Outcome> expected;  // by State
        COleDateTime set = {};
    } kRows[] = {
        {"operator= from a moment",
         [](RVDateTime& object) { return Yes_Or_No(&(object = RVDateTime()) == &object); },
         Any({"true", {}, kSet}, "true"),
         {0.0, COleDateTime::valid}},
        {"operator= from null",
         [](RVDateTime& object) { return Yes_Or_No(&(object = *Make(kNull)) == &object); },
         Any({"true", {}, kSet}, "true"),
         {2.25, COleDateTime::null}},
        {"operator= from no held value",
         [](RVDateTime& object) { return Yes_Or_No(&(object = *Make(kNone)) == &object); },
         Any({"true", {18}, kInvalidated}, "true")},
        {"operator= from itself",
         [](RVDateTime& object) {
             const RVDateTime& same = object;
             return Yes_Or_No(&(object = same) == &object);
         },
         Any({"true", {}}, "true")},
        {"part getters",
         Parts_Of,
         {{"2001-2-3 4:5:6", {}},
          {"-1--1--1 -1:-1:-1", {}},
          {"-1--1--1 -1:-1:-1", {}},
          {"0-0-0 0:0:0", {18, 18, 18, 18, 18, 18}}}},
        {"Set_Db_Value, good",
         [](RVDateTime& object) { return Yes_Or_No(Set_Db(object, "19000101060000")); },
         Any({"true", {}, kSet}),
         {2.25, COleDateTime::valid}},
        {"Set_Db_Value, empty",
         [](RVDateTime& object) { return Yes_Or_No(Set_Db(object, "")); },
         Any({"true", {}, kSet}),
         {29221 + 1 / 86400.0, COleDateTime::valid}},
        {"Set_Db_Value, no such month",
         [](RVDateTime& object) { return Yes_Or_No(Set_Db(object, "19801301000000")); },
         Any({"false", {}})},
        {"Set_Db_Value, too short",
         [](RVDateTime& object) { return Yes_Or_No(Set_Db(object, "1980010100000")); },
         Any({"false", {13}})},
        {"Get_Db_Value",
         [](RVDateTime& object) {
             RVString text("before");
             object.Get_Db_Value(text);
             return std::string(text.GetString());
         },
         {{"20010203040506", {}}, {"Invalid DateTime", {}}, {"", {13}}, {"before", {18}}}},
        {"Set_Value, six parts",
         [](RVDateTime& object) { return Yes_Or_No(object.Set_Value(1899, 12, 29, 18, 0, 0)); },
         Any({"true", {}, kSet}),
         {-1.75, COleDateTime::valid}},
        {"Set_Value, six parts, no such day",
         [](RVDateTime& object) { return Yes_Or_No(object.Set_Value(2000, 2, 30, 0, 0, 0)); },
         Any({"false", {17}, kInvalidated})},
        {"Set_Date_Value",
         [](RVDateTime& object) { return Yes_Or_No(object.Set_Date_Value(1899, 12, 31)); },
         {{"true", {}, kSet},
          {"true", {}, kInvalidated},
          {"true", {}, kInvalidated},
          {"false", {18}}},
         {1 + 14706 / 86400.0, COleDateTime::valid}},
        {"Set_Date_Value, no such day",
         [](RVDateTime& object) { return Yes_Or_No(object.Set_Date_Value(2000, 2, 30)); },
         Any({"false", {17}})},
        {"Set_Time_Value",
         [](RVDateTime& object) { return Yes_Or_No(object.Set_Time_Value(12, 0, 0)); },
         {{"true", {}, kSet},
          {"true", {}, kInvalidated},
          {"true", {}, kInvalidated},
          {"false", {18}}},
         {36925.5, COleDateTime::valid}},
        {"Set_Time_Value, no such hour",
         [](RVDateTime& object) { return Yes_Or_No(object.Set_Time_Value(24, 0, 0)); },
         Any({"false", {17}})},
        {"Set_Value from a record",
         [](RVDateTime& object) {
             COleDateTime value{1e300, COleDateTime::null};
             return Yes_Or_No(object.Set_Value(value));
         },
         Any({"true", {}, kSet}),
         {1e300, COleDateTime::null}},
        {"Get_Value into a record",
         [](RVDateTime& object) {
             COleDateTime value{8.5, COleDateTime::valid};
             object.Get_Value(value);
             return std::to_string(value.m_dt).substr(0, 4) + "/" + std::to_string(value.m_status);
         },
         {{"3692/0", {}}, {"2.25/1", {}}, {"2.25/2", {}}, {"8.50/0", {18}}}},
    };
    for (const auto& row : kRows) {
        for (const State state : {kValid, kInvalid, kNull, kNone}) {
            SCOPED_TRACE(std::string(row.name) + ", " + kStateNames[state]);
            const Outcome& expected = row.expected[state];
            const auto object = Make(state);
            ReportRecorder reports;
            EXPECT_EQ(row.operation(*object), expected.result);
            EXPECT_EQ(Codes(reports), expected.codes);
            const COleDateTime after = expected.after == kSet ? row.set
                                       : expected.after == kInvalidated
                                           ? COleDateTime{kHeld[state].m_dt, COleDateTime::invalid}
                                           : kHeld[state];
            EXPECT_EQ(Text_Of(Held_By(*object)), Text_Of(after));
        }
    }
}

TEST(DateTimeStates, Constructors) {
    constexpr State kNoCopy = kStates;
    const struct {
        const char* name;
        State copied;      // kNoCopy: the text decides
        const char* text;  // null: the default constructor
        COleDateTime held;
        std::vector<unsigned int> codes;
    } kRows[] = {
        {"default", kNoCopy, nullptr, {0.0, COleDateTime::valid}, {}},
        {"copy of a moment", kValid, nullptr, kHeld[kValid], {}},
        {"copy of invalid", kInvalid, nullptr, kHeld[kInvalid], {}},
        {"copy of null", kNull, nullptr, kHeld[kNull], {}},
        {"copy of no held value", kNone, nullptr, {0.0, COleDateTime::invalid}, {18}},
        {"text", kNoCopy, "18991229180000", {-1.75, COleDateTime::valid}, {}},
        {"empty text", kNoCopy, "", {29221 + 1 / 86400.0, COleDateTime::valid}, {}},
        {"text, month 13", kNoCopy, "19801301000000", {0.0, COleDateTime::valid}, {13}},
        {"text of another length", kNoCopy, "1980", {0.0, COleDateTime::valid}, {13, 13}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        const auto source = Make(row.copied == kNoCopy ? kValid : row.copied);
        RVString text(row.text);
        const auto make = [&] {
            return std::unique_ptr<RVDateTime>(row.copied != kNoCopy ? new RVDateTime(*source)
                                               : row.text            ? new RVDateTime(text)
                                                                     : new RVDateTime);
        };
        ReportRecorder reports;
        const auto object = make();
        EXPECT_EQ(Codes(reports), row.codes);
        EXPECT_EQ(Text_Of(Held_By(*object)), Text_Of(row.held));

        // Its memory refused: code 23 and nothing else.
        const FailingAllocation failing(0);
        const auto without = make();
        EXPECT_EQ(Codes(reports), std::vector{23u});
        EXPECT_EQ(Text_Of(Held_By(*without)), Text_Of(kHeld[kNone]));
        EXPECT_EQ(Codes(reports), std::vector{18u});
    }
}

TEST(DateTimeStates, NoTwoObjectsShareAValue) {
    RVDateTime original;
    RVDateTime copy(original);
    EXPECT_TRUE(copy.Set_Value(2001, 2, 3, 4, 5, 6));
    EXPECT_EQ(Parts_Of(original), "1899-12-30 0:0:0");
    EXPECT_EQ(Parts_Of(copy), "2001-2-3 4:5:6");
}

TEST(DateTimeText, WhatIsTaken) {
    const struct {
        const char* why;
        RVString text;
        const char* parts;  // null: refused
    } kRows[] = {
        {"first second", "01000101000000", "100-1-1 0:0:0"},
        {"last second", "99991231235959", "9999-12-31 23:59:59"},
        {"leap year", "19800229000000", "1980-2-29 0:0:0"},
        {"leap century", "20000229000000", "2000-2-29 0:0:0"},
        {"negative number", "18991228235959", "1899-12-28 23:59:59"},
        {"blanks before numbers", "1980 1 1000001", "1980-1-1 0:0:1"},
        {"other white space", "1980\t1\n1\v0\f0\r1", "1980-1-1 0:0:1"},
        {"fields that end early", "198x1y1z000000", "198-1-1 0:0:0"},
        {"signs", "+980+1+1+0-0+1", "980-1-1 0:0:1"},
        {"no number is 0", "20010203  xx--", "2001-2-3 0:0:0"},
        {"NUL ends a field", CString("2001\0002\00030405\0006", 14), nullptr},
        {"NUL behind the digit", CString("20012\0003\000040506", 14), "2001-2-3 4:5:6"},
        {"sign alone in the month", "2001-001000000", nullptr},
        {"year 99", "00991231235959", nullptr},
        {"negative year", "-9991231235959", nullptr},
        {"month 0", "19800001000000", nullptr},
        {"month 13", "19801301000000", nullptr},
        {"day 0", "19800100000000", nullptr},
        {"29 February of a common year", "19810229000000", nullptr},
        {"29 February of a common century", "19000229000000", nullptr},
        {"31 November", "19801131000000", nullptr},
        {"hour 24", "19800101240000", nullptr},
        {"hour -1", "19800101-10000", nullptr},
        {"minute 60", "19800101006000", nullptr},
        {"second 60", "19800101000060", nullptr},
        {"second -1", "198001010000-1", nullptr},
        {"letters", "abcdefghijklmn", nullptr},
        {"bytes above ASCII",
         "\xA0"
         "980\xB2"
         "101000000",
         nullptr},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        RVString text = row.text;
        ReportRecorder reports;
        RVDateTime object;
        EXPECT_EQ(RVDateTime::Validate_Db_Value(text), row.parts != nullptr);
        EXPECT_EQ(object.Set_Db_Value(text), row.parts != nullptr);
        EXPECT_EQ(Parts_Of(object), row.parts ? row.parts : "1899-12-30 0:0:0");
        EXPECT_EQ(Codes(reports), std::vector<unsigned int>());
    }
}

TEST(DateTimeText, OnlyFourteenCharactersAreATextAtAll) {
    const std::string digits = "20010203040506070809";
    for (std::size_t length = 0; length <= digits.size(); ++length) {
        RVString text(digits.substr(0, length).c_str());
        ReportRecorder reports;
        RVDateTime object;
        EXPECT_EQ(RVDateTime::Validate_Db_Value(text), length == 14) << length;
        EXPECT_EQ(Codes(reports), std::vector<unsigned int>()) << length;
        EXPECT_EQ(object.Set_Db_Value(text), length == 0 || length == 14) << length;
        EXPECT_EQ(Codes(reports).size(), length == 0 || length == 14 ? 0u : 1u) << length;
    }
}

TEST(DateTimeText, EveryYearMonthAndTimeOfDayBothWays) {
    int seconds = 0;
    for (int year = 100; year <= 9999; ++year) {
        for (int month = 1; month <= 12; ++month) {
            const int day = 1 + seconds % 28;
            seconds = (seconds + 7919) % 86400;
            char digits[48];
            std::snprintf(digits, sizeof digits, "%04d%02d%02d%02d%02d%02d", year, month, day,
                          seconds / 3600, seconds / 60 % 60, seconds % 60);
            RVString text(digits);
            RVDateTime object;
            ASSERT_TRUE(object.Set_Db_Value(text)) << digits;
            RVString back;
            object.Get_Db_Value(back);
            ASSERT_STREQ(back, digits);
            ASSERT_TRUE(object.Set_Value(static_cast<short>(year), static_cast<short>(month),
                                         static_cast<short>(day), 0, 0, 0));
            ASSERT_TRUE(object.Set_Time_Value(static_cast<short>(seconds / 3600),
                                              static_cast<short>(seconds / 60 % 60),
                                              static_cast<short>(seconds % 60)));
            object.Get_Db_Value(back);
            ASSERT_STREQ(back, digits);
        }
    }
}

TEST(DateTimeText, ANumberOutsideOfTheCalendarIsNoMoment) {
    for (const DATE number :
         {-657435.0, 2958466.0, 1e300, -1e300, std::numeric_limits<DATE>::infinity()}) {
        COleDateTime value{number, COleDateTime::valid};
        ReportRecorder reports;
        RVDateTime object(value);
        RVString text;
        object.Get_Db_Value(text);
        EXPECT_STREQ(text, "Invalid DateTime") << number;
        EXPECT_EQ(Parts_Of(object), "-1--1--1 -1:-1:-1") << number;
        EXPECT_EQ(Codes(reports), std::vector<unsigned int>()) << number;
        EXPECT_TRUE(object.Set_Time_Value(1, 2, 3)) << number;
        EXPECT_EQ(Held_By(object).m_status, COleDateTime::invalid) << number;
    }
}

TEST(DateTimeParts, Refused) {
    constexpr short kLow = std::numeric_limits<short>::min();
    constexpr struct {
        const char* why;
        short year, month, day, hour, minute, second;
    } kRows[] = {
        {"year 99", 99, 1, 1, 0, 0, 0},         {"year 10000", 10000, 1, 1, 0, 0, 0},
        {"year 0", 0, 1, 1, 0, 0, 0},           {"lowest year", kLow, 1, 1, 0, 0, 0},
        {"month 0", 2000, 0, 1, 0, 0, 0},       {"month 13", 2000, 13, 1, 0, 0, 0},
        {"day 0", 2000, 1, 0, 0, 0, 0},         {"day -1", 2000, 1, -1, 0, 0, 0},
        {"30 February", 2000, 2, 30, 0, 0, 0},  {"31 April", 2000, 4, 31, 0, 0, 0},
        {"32 December", 2000, 12, 32, 0, 0, 0}, {"hour 24", 2000, 1, 1, 24, 0, 0},
        {"hour -1", 2000, 1, 1, -1, 0, 0},      {"minute 60", 2000, 1, 1, 0, 60, 0},
        {"minute -1", 2000, 1, 1, 0, -1, 0},    {"second 60", 2000, 1, 1, 0, 0, 60},
        {"second -1", 2000, 1, 1, 0, 0, -1},    {"lowest second", 2000, 1, 1, 0, 0, kLow},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto object = Make(kValid);
        ReportRecorder reports;
        // Each row is wrong in its date or in its time of day, and that one is refused.
        const bool date_taken = object->Set_Date_Value(row.year, row.month, row.day);
        EXPECT_NE(date_taken, object->Set_Time_Value(row.hour, row.minute, row.second));
        EXPECT_EQ(Codes(reports), std::vector{17u});
        EXPECT_EQ(Held_By(*object).m_status, COleDateTime::valid);
        EXPECT_FALSE(
            object->Set_Value(row.year, row.month, row.day, row.hour, row.minute, row.second));
        EXPECT_EQ(Codes(reports), std::vector{17u});
        EXPECT_EQ(Held_By(*object).m_status, COleDateTime::invalid);
    }
}

// The text of an instant in a zone without summer time, by its offset alone.
std::string Text_At(std::time_t now, int offset) {
    const std::time_t shifted = now + offset;
    const std::tm* const parts = std::gmtime(&shifted);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", parts);
    return text;
}

TEST(DateTimeClock, ShowsThePresentMomentOfTheZone) {
    constexpr struct {
        const char* zone;
        int offset;  // to UTC, in seconds, positive to the east
    } kRows[] = {{"UTC0", 0},       {"EST5", -18000},    {"XYZ12", -43200},
                 {"XYZ-14", 50400}, {"IST-5:30", 19800}, {"NST3:30", -12600}};
    for (const auto& row : kRows) {
        const rv_test::TimeZone zone(row.zone);
        const std::string before = Text_At(std::time(nullptr), row.offset);
        RVString text;
        RVDateTime::Get_Current_Db_Value(text);
        const auto object = Make(kNull);
        object->Get_Current_Value(nullptr);
        const std::string after = Text_At(std::time(nullptr), row.offset);

        RVString of_object;
        object->Get_Db_Value(of_object);
        EXPECT_LE(before, text.GetString()) << row.zone;
        EXPECT_LE(text.GetString(), after) << row.zone;
        EXPECT_LE(before, of_object.GetString()) << row.zone;
        EXPECT_LE(of_object.GetString(), after) << row.zone;
    }
}

TEST(DateTimeMemory, TheClockWithoutMemoryReportsAndLeavesTheText) {
    ReportRecorder reports;
    RVString text("before");
    {
        const FailingAllocation failing(0);
        RVDateTime::Get_Current_Db_Value(text);
    }
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(Codes(reports), (std::vector{23u, 18u}));

    const auto without = Make(kNone);
    without->Get_Current_Value(nullptr);
    EXPECT_EQ(Codes(reports), std::vector{18u});
}

TEST(DateTimeMemory, ATextThatCannotBeHadLeavesTheArgument) {
    const auto object = Make(kInvalid);
    const long failures = rv_test::Sweep_Allocations([&] {
        RVString text("before");
        try {
            object->Get_Db_Value(text);
            EXPECT_STREQ(text, "Invalid DateTime");
        } catch (CMemoryException* error) {
            error->Delete();
            EXPECT_STREQ(text, "before");
        }
    });
    EXPECT_GT(failures, 0);
}

}  // namespace
