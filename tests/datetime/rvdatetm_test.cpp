#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>

#include "allocation_sweep.h"
#include "report_recorder.h"
#include "time_zone.h"

namespace {

using rv_test::FailingAllocation;
using rv_test::ReportRecorder;

static_assert(sizeof(RVDateTime) == 2 * sizeof(void*), "one pointer besides the virtual table's");

// What has been reported, a blank before each code.
std::string Codes(ReportRecorder& reports) {
    std::string codes;
    for (const auto& [code, file] : reports.Take()) {
        EXPECT_EQ(file, "rvdatetm");
        codes += ' ' + std::to_string(code);
    }
    return codes;
}

// Status and number, to a fraction of a second: platforms differ in the last bit of a sum.
std::string Held_By(RVDateTime& object) {
    ReportRecorder reports;
    COleDateTime value;
    object.Get_Value(value);
    char text[64];
    std::snprintf(text, sizeof text, "%d %.12g", value.m_status, value.m_dt);
    return Codes(reports) == " 18" ? "none" : text;
}

enum State { kValid, kInvalid, kNull, kNone, kStates };

std::unique_ptr<RVDateTime> Make(State state) {
    // 3 February 2001 12:00:00 where it is valid.
    COleDateTime value = {state == kValid ? 36925.5 : 2.25, COleDateTime::DateTimeStatus(state)};
    if (state != kNone) return std::make_unique<RVDateTime>(value);
    ReportRecorder reports;
    const FailingAllocation failing(0);
    return std::make_unique<RVDateTime>();
}

std::string Parts_Of(RVDateTime& object) {
    const short parts[] = {object.Get_Year(), object.Get_Month(),  object.Get_Day(),
                           object.Get_Hour(), object.Get_Minute(), object.Get_Second()};
    std::string text;
    for (const short part : parts)
        text += std::to_string(part) + '/';
    return text;
}

std::string Bool(bool result) {
    return result ? "true" : "false";
}

std::string Set_Db(RVDateTime& object, RVString text) {
    return Bool(object.Set_Db_Value(text));
}

std::string Get_Db(RVDateTime& object) {
    RVString text("before");
    object.Get_Db_Value(text);
    return text.GetString();
}

std::string Assign(RVDateTime& object, const RVDateTime& other) {
    return Bool(&(object = other) == &object);
}

std::string Set_Null(RVDateTime& object) {
    COleDateTime value = {8.5, COleDateTime::null};
    return Bool(object.Set_Value(value));
}

TEST(DateTime, EveryOperationInEveryState) {
    // By State: result, codes reported, and what the object holds where that has changed. A state
    // that is left out does as the one before it; without held value it is false and code 18.
    constexpr struct {
        const char* name;
        std::string (*run)(RVDateTime&);
        const char *valid, *invalid = nullptr, *null = nullptr, *none = "false 18";
    } kRows[] = {
        {"= null", [](RVDateTime& o) { return Assign(o, *Make(kNull)); }, "true -> 2 2.25",
         "true -> 2 2.25", "true", "true 18"},
        {"= no held value", [](RVDateTime& o) { return Assign(o, *Make(kNone)); },
         "true 18 -> 1 36925.5", "true 18", "true 18 -> 1 2.25", "true 18"},
        {"= itself", [](RVDateTime& o) { return Assign(o, o); }, "true", "true", "true", "true 18"},
        {"parts", Parts_Of, "2001/2/3/12/0/0/", "-1/-1/-1/-1/-1/-1/", nullptr,
         "0/0/0/0/0/0/ 18 18 18 18 18 18"},
        {"good text", [](RVDateTime& o) { return Set_Db(o, "19000101060000"); }, "true -> 0 2.25"},
        {"empty text", [](RVDateTime& o) { return Set_Db(o, ""); }, "true -> 0 29221.0000116"},
        {"month 13", [](RVDateTime& o) { return Set_Db(o, "19801301000000"); }, "false"},
        {"short text", [](RVDateTime& o) { return Set_Db(o, "1980010100000"); }, "false 13"},
        {"Get_Db_Value", Get_Db, "20010203120000", "Invalid DateTime", " 13", "before 18"},
        {"Set_Value", [](RVDateTime& o) { return Bool(o.Set_Value(1899, 12, 29, 18, 0, 0)); },
         "true -> 0 -1.75"},
        {"30 February", [](RVDateTime& o) { return Bool(o.Set_Value(2000, 2, 30, 0, 0, 0)); },
         "false 17 -> 1 36925.5", "false 17", "false 17 -> 1 2.25"},
        {"date", [](RVDateTime& o) { return Bool(o.Set_Date_Value(1899, 12, 31)); },
         "true -> 0 1.5", "true", "true -> 1 2.25"},
        {"no date", [](RVDateTime& o) { return Bool(o.Set_Date_Value(2000, 2, 30)); }, "false 17"},
        {"time", [](RVDateTime& o) { return Bool(o.Set_Time_Value(18, 0, 0)); },
         "true -> 0 36925.75", "true", "true -> 1 2.25"},
        {"no time", [](RVDateTime& o) { return Bool(o.Set_Time_Value(24, 0, 0)); }, "false 17"},
        {"record", Set_Null, "true -> 2 8.5"},
    };
    for (const auto& row : kRows) {
        const char* expected[kStates] = {row.valid, row.invalid, row.null, row.none};
        for (const State state : {kValid, kInvalid, kNull, kNone}) {
            if (!expected[state]) expected[state] = expected[state - 1];
            const auto object = Make(state);
            const std::string before = Held_By(*object);
            ReportRecorder reports;
            std::string outcome = row.run(*object);
            outcome += Codes(reports);
            if (Held_By(*object) != before) outcome += " -> " + Held_By(*object);
            EXPECT_EQ(outcome, expected[state]) << row.name << ", state " << state;
        }
    }
}

TEST(DateTime, Constructors) {
    constexpr struct {
        const char* why;
        const char* text;  // null: a copy
        State copied;
        const char* expected;  // what it holds, and the codes reported
    } kRows[] = {{"copy of a moment", nullptr, kValid, "0 36925.5"},
                 {"copy of null", nullptr, kNull, "2 2.25"},
                 {"copy of no held value", nullptr, kNone, "1 0 18"},
                 {"text", "18991229180000", kValid, "0 -1.75"},
                 {"empty text", "", kValid, "0 29221.0000116"},
                 {"month 13", "19801301000000", kValid, "0 0 13"},
                 {"short text", "1980", kValid, "0 0 13 13"}};
    for (const auto& row : kRows) {
        const auto source = Make(row.copied);
        RVString text(row.text);
        ReportRecorder reports;
        const auto make = [&] {
            RVDateTime object = row.text ? RVDateTime(text) : RVDateTime(*source);
            return Held_By(object) + Codes(reports);
        };
        EXPECT_EQ(make(), row.expected) << row.why;
        const FailingAllocation failing(0);
        EXPECT_EQ(make(), "none 23") << row.why;
    }
    RVDateTime fresh;
    EXPECT_EQ(Held_By(fresh), "0 0");
}

TEST(DateTime, DbTextsThatAreTaken) {
    const struct {
        const char* why;
        RVString text;
        const char* parts;  // null: refused
    } kRows[] = {
        {"first second", "01000101000000", "100/1/1/0/0/0/"},
        {"leap century", "20000229000000", "2000/2/29/0/0/0/"},
        {"blanks before numbers", "1980 1 1000001", "1980/1/1/0/0/1/"},
        {"other white space", "1980\t1\n1\v0\f0\r1", "1980/1/1/0/0/1/"},
        {"fields that end early", "198x1y1z000000", "198/1/1/0/0/0/"},
        {"signs", "+9801201+0-0+1", "980/12/1/0/0/1/"},
        {"no number is 0", "20010203  xx--", "2001/2/3/0/0/0/"},
        {"NUL behind a digit", CString("20012\0003\000040506", 14), "2001/2/3/4/5/6/"},
        {"year 99", "00991231235959", nullptr},
        {"negative year", "-9991231235959", nullptr},
        {"29 February of a common century", "19000229000000", nullptr},
        {"hour -1", "19800101-10000", nullptr},
        {"byte above ASCII", "2001020304050\xB2", "2001/2/3/4/5/0/"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        RVString text = row.text;
        ReportRecorder reports;
        RVDateTime object;
        EXPECT_EQ(RVDateTime::Validate_Db_Value(text), row.parts != nullptr);
        EXPECT_EQ(object.Set_Db_Value(text), row.parts != nullptr);
        EXPECT_EQ(Parts_Of(object), row.parts ? row.parts : "1899/12/30/0/0/0/");
        for (int length = 0; length < 14; ++length) {
            RVString shorter = text.Left(length), longer = text + text.Left(length + 1);
            EXPECT_FALSE(RVDateTime::Validate_Db_Value(shorter)) << length;
            EXPECT_FALSE(RVDateTime::Validate_Db_Value(longer)) << length;
        }
        EXPECT_EQ(Codes(reports), "");
    }
}

TEST(DateTime, EveryYearAndMonthBothWays) {
    int seconds = 0;
    for (int i = 1200; i < 120000; ++i) {
        seconds = (seconds + 7919) % 86400;
        const int parts[] = {i / 12,         i % 12 + 1,        1 + i % 28,
                             seconds / 3600, seconds / 60 % 60, seconds % 60};
        char digits[80];
        std::snprintf(digits, sizeof digits, "%04d%02d%02d%02d%02d%02d", parts[0], parts[1],
                      parts[2], parts[3], parts[4], parts[5]);
        RVString text(digits), back;
        RVDateTime object(text);
        object.Get_Db_Value(back);
        ASSERT_STREQ(back, digits);
    }
}

TEST(DateTime, EveryValueOfEveryPart) {
    constexpr struct {
        const char* part;
        short first, last;
    } kRows[] = {{"year", 100, 9999}, {"month", 1, 12},  {"day", 1, 31},
                 {"hour", 0, 23},     {"minute", 0, 59}, {"second", 0, 59}};
    ReportRecorder reports;
    for (int field = 0; field < 6; ++field) {
        // One by one as far as parts reach.
        for (int value = SHRT_MIN; value <= SHRT_MAX;
             value += value < -70 || value > 10070 ? 61 : 1) {
            short p[] = {2000, 1, 1, 0, 0, 0};
            p[field] = static_cast<short>(value);
            const bool good = value >= kRows[field].first && value <= kRows[field].last;
            RVDateTime object;
            ASSERT_EQ(object.Set_Date_Value(p[0], p[1], p[2]), good || field >= 3) << value;
            ASSERT_EQ(object.Set_Time_Value(p[3], p[4], p[5]), good || field < 3) << value;
            ASSERT_EQ(object.Set_Value(p[0], p[1], p[2], p[3], p[4], p[5]), good)
                << kRows[field].part << ' ' << value;
            ASSERT_EQ(Codes(reports), good ? "" : " 17 17") << value;
        }
    }
}

// The text of an instant in a zone without summer time, by its offset alone.
std::string Text_At(std::time_t now, int offset) {
    const std::time_t shifted = now + offset;
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", std::gmtime(&shifted));
    return text;
}

TEST(DateTime, ShowsThePresentMomentOfTheZone) {
    constexpr struct {
        const char* zone;
        int offset;  // to UTC, in seconds, positive to the east
    } kRows[] = {{"UTC0", 0}, {"XYZ12", -43200}, {"XYZ-14", 50400}, {"IST-5:30", 19800}};
    for (const auto& row : kRows) {
        rv_test::Set_Time_Zone(row.zone);
        const auto object = Make(kNull);
        RVString texts[2];
        const std::string before = Text_At(std::time(nullptr), row.offset);
        RVDateTime::Get_Current_Db_Value(texts[0]);
        object->Get_Current_Value(nullptr);
        const std::string after = Text_At(std::time(nullptr), row.offset);
        object->Get_Db_Value(texts[1]);
        for (const RVString& text : texts) {
            EXPECT_LE(before, text.GetString()) << row.zone;
            EXPECT_LE(text.GetString(), after) << row.zone;
        }
    }
}

TEST(DateTime, WithoutMemoryTextsStayAsTheyWere) {
    ReportRecorder reports;
    RVString text("before");
    {
        const FailingAllocation failing(0);
        RVDateTime::Get_Current_Db_Value(text);
    }
    EXPECT_STREQ(text, "before");
    Make(kNone)->Get_Current_Value(nullptr);
    EXPECT_EQ(Codes(reports), " 23 18 18");

    // A number beyond the calendar is no moment, whatever its status.
    COleDateTime value = {2958466.0};
    RVDateTime beyond(value);
    EXPECT_EQ(Parts_Of(beyond), "-1/-1/-1/-1/-1/-1/");
    const auto get_text = [&] {
        text = "before";
        try {
            beyond.Get_Db_Value(text);
            EXPECT_STREQ(text, "Invalid DateTime");
        } catch (CMemoryException* error) {
            error->Delete();
            EXPECT_STREQ(text, "before");
        }
    };
    EXPECT_GT(rv_test::Sweep_Allocations(get_text), 0);
}

}  // namespace
