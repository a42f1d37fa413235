#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include "allocation_sweep.h"
#include "platform/display_text.h"
#include "report_recorder.h"
#include "shown_picker.h"
#include "time_zone.h"

namespace {

using rv_test::Date_Text;
using rv_test::FailingAllocation;
using rv_test::ReportRecorder;
using rv_test::Time_Text;

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
std::string Text_Of(const COleDateTime& value) {
    char text[64];
    std::snprintf(text, sizeof text, "%d %.12g", value.m_status, value.m_dt);
    return text;
}

std::string Text_Of(const RVString& text) {
    return text.GetString();
}

std::string Held_By(RVDateTime& object) {
    ReportRecorder reports;
    COleDateTime value;
    object.Get_Value(value);
    return Codes(reports) == " 18" ? "none" : Text_Of(value);
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

// What a getter makes of the output given.
template <class Output>
std::string Given(RVDateTime& object, void (RVDateTime::*get)(std::type_identity_t<Output>&),
                  Output output) {
    (object.*get)(output);
    return Text_Of(output);
}

std::string Db_Of(RVDateTime& object) {
    return Given(object, &RVDateTime::Get_Db_Value, RVString("before"));
}

std::string Wide_Db(RVDateTime& object) {
    BSTR wide = nullptr;
    object.Get_Db_Value(&wide);
    CComBSTR owned(L"before");
    object.Get_Db_Value(owned);
    const std::string texts = std::string(CString(wide)) + '|' + CString(owned.m_str).GetString();
    SysFreeString(wide);
    return texts;
}

std::string Seconds_Of(RVDateTime& object, bool time80) {
    LONG seconds = 77;
    std::string outcome;
    try {
        object.Get_Value(seconds, time80);
    } catch (const ATL::CAtlException& error) {
        EXPECT_EQ(error.m_hr, E_INVALIDARG);
        outcome = "thrown ";
    }
    return outcome + std::to_string(seconds);
}

// 5 May 2005 06:00:00, and no moment.
constexpr COleDateTime kRecord = {38477.25};
constexpr COleDateTime kNullRecord = {8.5, COleDateTime::null};

// What a picker, which shows kRecord before, shows when it was given the value.
std::string Shown(RVDateTime& object, void (RVDateTime::*get)(CDateTimeCtrl&)) {
    rv_test::ShownPicker picker(DTS_SHOWNONE);
    EXPECT_TRUE(picker.control.SetTime(kRecord));
    (object.*get)(picker.control);
    COleDateTime shown;
    EXPECT_TRUE(picker.control.GetTime(shown));
    return Text_Of(shown);
}

// Compare_Date, Compare_Time, and which of = ! < l > g hold, where l and g are <= and >=.
std::string Compared(const RVDateTime& a, const RVDateTime& b) {
    std::string outcome = std::to_string(a.Compare_Date(b)) + ' ';
    outcome += std::to_string(a.Compare_Time(b)) + ' ';
    if (a == b) outcome += '=';
    if (a != b) outcome += '!';
    if (a < b) outcome += '<';
    if (a <= b) outcome += 'l';
    if (a > b) outcome += '>';
    if (a >= b) outcome += 'g';
    return outcome;
}

TEST(DateTime, EveryOperationInEveryState) {
    // What operations take and give to.
    COleDateTime record = kRecord, null_record = kNullRecord;
    rv_test::ShownPicker picker(DTS_SHOWNONE);
    ASSERT_TRUE(picker.control.SetTime(record));
    RVString before("before"), good("19000101060000"), month_13("19801301000000");
    RVString empty, no_date("no date"), wrong_length("1980010100000");
    CComBSTR wide(L"19000101060000");
    wchar_t* const no_text = nullptr;
    wchar_t** const nowhere = nullptr;
    // The platform's own texts, in whatever locale the tests run.
    constexpr rv_test::Form kHeld = {2001, 2, 3, 12, 0, 0}, kOther = {1900, 1, 1, 6, 0, 0};
    const RVString date = Date_Text(kHeld).c_str(), time = Time_Text(kHeld).c_str();
    const RVString both = date + ' ' + time;
    RVString other = (Date_Text(kOther) + ' ' + Time_Text(kOther)).c_str();
    rv_test::Set_Time_Zone("UTC0");

    // By State: result, codes reported, and what the object holds where that has changed. A state
    // that is left out does as the one before it; without held value it is false and code 18.
    const struct {
        const char* name;
        std::function<std::string(RVDateTime&)> run;
        const char *valid, *invalid = nullptr, *null = nullptr, *none = "false 18";
    } rows[] = {
        {"= null", [](auto& o) { return Bool(&(o = *Make(kNull)) == &o); }, "true -> 2 2.25",
         "true -> 2 2.25", "true", "true 18"},
        {"= no held value", [](auto& o) { return Bool(&(o = *Make(kNone)) == &o); },
         "true 18 -> 1 36925.5", "true 18", "true 18 -> 1 2.25", "true 18"},
        {"= itself", [](auto& o) { return Bool(&(o = std::as_const(o)) == &o); }, "true", "true",
         "true", "true 18"},
        {"parts", Parts_Of, "2001/2/3/12/0/0/", "-1/-1/-1/-1/-1/-1/", nullptr,
         "0/0/0/0/0/0/ 18 18 18 18 18 18"},
        {"good text", [&](auto& o) { return Bool(o.Set_Db_Value(good)); }, "true -> 0 2.25"},
        {"empty text", [&](auto& o) { return Bool(o.Set_Db_Value(empty)); },
         "true -> 0 29221.0000116"},
        {"month 13", [&](auto& o) { return Bool(o.Set_Db_Value(month_13)); }, "false"},
        {"short text", [&](auto& o) { return Bool(o.Set_Db_Value(wrong_length)); }, "false 13"},
        {"Get_Db_Value", Db_Of, "20010203120000", "Invalid DateTime", " 13", "before 18"},
        {"Set_Value", [](auto& o) { return Bool(o.Set_Value(1899, 12, 29, 18, 0, 0)); },
         "true -> 0 -1.75"},
        {"30 February", [](auto& o) { return Bool(o.Set_Value(2000, 2, 30, 0, 0, 0)); },
         "false 17 -> 1 36925.5", "false 17", "false 17 -> 1 2.25"},
        {"date", [](auto& o) { return Bool(o.Set_Date_Value(1899, 12, 31)); }, "true -> 0 1.5",
         "true", "true -> 1 2.25"},
        {"no date", [](auto& o) { return Bool(o.Set_Date_Value(2000, 2, 30)); }, "false 17"},
        {"time", [](auto& o) { return Bool(o.Set_Time_Value(18, 0, 0)); }, "true -> 0 36925.75",
         "true", "true -> 1 2.25"},
        {"no time", [](auto& o) { return Bool(o.Set_Time_Value(24, 0, 0)); }, "false 17"},
        {"owned wide text", [&](auto& o) { return Bool(o.Set_Db_Value(wide)); }, "true -> 0 2.25"},
        {"wide text", [&](auto& o) { return Bool(o.Set_Db_Value(wide.m_str)); }, "true -> 0 2.25"},
        {"wide null", [&](auto& o) { return Bool(o.Set_Db_Value(no_text)); },
         "true -> 0 29221.0000116"},
        {"wide Get_Db_Value", Wide_Db, "20010203120000|20010203120000",
         "Invalid DateTime|Invalid DateTime", "|before 28 28", "|before 18 18"},
        {"nowhere", [&](auto& o) { return o.Get_Db_Value(nowhere), ""; }, " 12", nullptr, nullptr,
         " 18"},
        {"day of week", [](auto& o) { return std::to_string(o.Get_Day_Of_Week()); }, "7", "-1",
         nullptr, "-1 18"},
        {"leap year", [](auto& o) { return Bool(o.Is_Leap_Year()); }, "false", "false 13", nullptr,
         "false 18 13"},
        {"hour", [](auto& o) { return Bool(o.Set_Hour(18)); }, "true -> 0 36925.75", "false 25",
         "false 25 -> 1 2.25"},
        {"minute", [](auto& o) { return Bool(o.Set_Minute(36)); }, "true -> 0 36925.525",
         "false 25", "false 25 -> 1 2.25"},
        {"second", [](auto& o) { return Bool(o.Set_Second(54)); }, "true -> 0 36925.500625",
         "false 25", "false 25 -> 1 2.25"},
        {"hour 24", [](auto& o) { return Bool(o.Set_Hour(24)); }, "false 13"},
        {"minute -1", [](auto& o) { return Bool(o.Set_Minute(-1)); }, "false 13"},
        {"second 60", [](auto& o) { return Bool(o.Set_Second(60)); }, "false 13"},
        {"Add_Date", [](auto& o) { return o.Add_Date(1, 1, 1), ""; }, " -> 0 37319.5", " -> 0 3.25",
         nullptr, " 18"},
        {"Add_Time", [](auto& o) { return o.Add_Time(6, 30, 0), ""; }, " -> 0 36925.7708333",
         " -> 0 2.52083333333", nullptr, " 18"},
        {"time80", [](auto& o) { return Seconds_Of(o, true); }, "665668800", "0", nullptr, "0 18"},
        {"time70", [](auto& o) { return Seconds_Of(o, false); }, "981201600", "0", nullptr, "0 18"},
        {"from time80", [](auto& o) { return Bool(o.Set_Value(0, true)); }, "true -> 0 29221"},
        {"from time70", [](auto& o) { return Bool(o.Set_Value(86400, false)); }, "true -> 0 25570"},
        {"from -1", [](auto& o) { return Bool(o.Set_Value(-1, false)); }, "false 13"},
        {"second of day", [](auto& o) { return Bool(o.Set_Time_Value(21600)); },
         "true -> 0 36925.25", "true", "true -> 1 2.25"},
        {"second 86400", [](auto& o) { return Bool(o.Set_Time_Value(86400)); }, "false 17"},
        {"record", [&](auto& o) { return Bool(o.Set_Value(null_record)); }, "true -> 2 8.5"},
        {"date of record", [&](auto& o) { return Bool(o.Set_Date_Value(record)); },
         "true -> 0 38477.5", "false", "false -> 1 2.25"},
        {"date of null record", [&](auto& o) { return Bool(o.Set_Date_Value(null_record)); },
         "false -> 1 36925.5", "false", "false -> 1 2.25"},
        {"time of record", [&](auto& o) { return Bool(o.Set_Time_Value(record)); },
         "true -> 0 36925.25", "false", "false -> 1 2.25"},
        {"into record", [&](auto& o) { return Given(o, &RVDateTime::Get_Value, null_record); },
         "0 36925.5", "1 2.25", "2 2.25", "2 8.5 18"},
        {"date into record", [&](auto& o) { return Given(o, &RVDateTime::Get_Date_Value, record); },
         "0 36925.25", "1 38477.25", nullptr, "0 38477.25 18"},
        {"time into record", [&](auto& o) { return Given(o, &RVDateTime::Get_Time_Value, record); },
         "0 38477.5", "1 38477.25", nullptr, "0 38477.25 18"},
        {"time into null record",
         [&](auto& o) { return Given(o, &RVDateTime::Get_Time_Value, null_record); }, "1 8.5",
         nullptr, nullptr, "2 8.5 18"},
        {"text", [&](auto& o) { return Given(o, &RVDateTime::Get_Value, before); }, both,
         "Invalid DateTime ", " ", "before 18"},
        {"date text", [&](auto& o) { return Given(o, &RVDateTime::Get_Date_Value, before); }, date,
         "Invalid DateTime", "", "before 18"},
        {"time text", [&](auto& o) { return Given(o, &RVDateTime::Get_Time_Value, before); }, time,
         "", nullptr, "before 18"},
        {"fixed text", [&](auto& o) { return Given(o, &RVDateTime::Get_Fixed_Date_Time, before); },
         "02/03/2001 12:00:00", "-01/-01/-0001 -01:-01:-01", nullptr,
         "00/00/0000 00:00:00 18 18 18 18 18 18"},
        {"from text", [&](auto& o) { return Bool(o.Set_Value(both)); }, "true",
         "true -> 0 36925.5"},
        {"from no text", [&](auto& o) { return Bool(o.Set_Value(no_date)); }, "false -> 1 0"},
        {"date from text", [&](auto& o) { return Bool(o.Set_Date_Value(other)); }, "true -> 0 2.5",
         "false", "false -> 1 2.25"},
        {"time from text", [&](auto& o) { return Bool(o.Set_Time_Value(other)); },
         "true -> 0 36925.25", "false", "false -> 1 2.25"},
        {"picker", [&](auto& o) { return Bool(o.Set_Value(picker.control)); },
         "true -> 0 38477.25"},
        {"date of picker", [&](auto& o) { return Bool(o.Set_Date_Value(picker.control)); },
         "true -> 0 38477.5", "false", "false -> 1 2.25"},
        {"time of picker", [&](auto& o) { return Bool(o.Set_Time_Value(picker.control)); },
         "true -> 0 36925.25", "false", "false -> 1 2.25"},
        {"into picker", [](auto& o) { return Shown(o, &RVDateTime::Get_Value); }, "0 36925.5",
         "0 38477.25", "2 0", "0 38477.25 18"},
        {"date into picker", [](auto& o) { return Shown(o, &RVDateTime::Get_Date_Value); },
         "0 36925.25", "0 38477.25", nullptr, "0 38477.25 18"},
        {"time into picker", [](auto& o) { return Shown(o, &RVDateTime::Get_Time_Value); },
         "0 38477.5", "0 38477.25", nullptr, "0 38477.25 18"},
        {"to valid", [](auto& o) { return Compared(o, *Make(kValid)); }, "0 0 =lg", "-1 1 !",
         nullptr, "0 0  18 18 18 18 18 18 18 18"},
        {"to invalid", [](auto& o) { return Compared(o, *Make(kInvalid)); }, "1 -1 !", "0 0 !",
         nullptr, "0 0  18 18 18 18 18 18 18 18"},
        {"to null", [](auto& o) { return Compared(o, *Make(kNull)); }, "1 -1 !", "0 0 !", "0 0 =lg",
         "0 0  18 18 18 18 18 18 18 18"},
        {"to no held value", [](auto& o) { return Compared(o, *Make(kNone)); }, "1 -1 !", "0 0 !",
         nullptr, "0 0  18 18 18 18 18 18 18 18"},
        {"date from no text", [&](auto& o) { return Bool(o.Set_Date_Value(no_date)); }, "false"},
        {"time from no text", [&](auto& o) { return Bool(o.Set_Time_Value(no_date)); }, "false"},
    };
    for (const auto& row : rows) {
        const char* expected[kStates] = {row.valid, row.invalid, row.null, row.none};
        for (const State state : {kValid, kInvalid, kNull, kNone}) {
            if (!expected[state]) expected[state] = expected[state - 1];
            const auto object = Make(state);
            const std::string held = Held_By(*object);
            ReportRecorder reports;
            std::string outcome = row.run(*object);
            outcome += Codes(reports);
            if (Held_By(*object) != held) outcome += " -> " + Held_By(*object);
            EXPECT_EQ(outcome, expected[state]) << row.name << ", state " << state;
        }
    }
}

TEST(DateTime, PickerThatShowsNoDateOrIsNone) {
    rv_test::ShownPicker picker(DTS_SHOWNONE);
    ASSERT_TRUE(picker.control.SetTime(kNullRecord));
    const auto object = Make(kValid);
    ReportRecorder reports;
    EXPECT_FALSE(object->Set_Date_Value(picker.control));
    EXPECT_EQ(Held_By(*object), "1 36925.5");
    EXPECT_TRUE(object->Set_Value(picker.control));
    EXPECT_EQ(Held_By(*object), "2 0");

    CDateTimeCtrl none;
    const auto other = Make(kValid);
    EXPECT_FALSE(other->Set_Value(none) || other->Set_Date_Value(none) ||
                 other->Set_Time_Value(none));
    other->Get_Value(none);
    other->Get_Date_Value(none);
    EXPECT_EQ(Held_By(*other), "0 36925.5");
    EXPECT_EQ(Codes(reports), "");
}

TEST(DateTime, ComparesMoments) {
    constexpr double kSecond = 1.0 / 86400;
    constexpr struct {
        const char* why;
        double left, right;
        const char *expected, *the_other_way;
    } kRows[] = {
        {"another hour", 2.25, 2.5, "0 -1 !<l", "0 1 !>g"},
        {"another day at the same hour", 2.25, 3.25, "-1 0 !<l", "1 0 !>g"},
        {"another month with an earlier day", 58.0, 60.5, "-1 -1 !<l", "1 1 !>g"},
        {"hours run forward below day 0", -1.75, -1.25, "0 1 !>g", "0 -1 !<l"},
        {"0.4 seconds", 40000, 40000 + 0.4 * kSecond, "0 0 =<lg", "0 0 =l>g"},
        {"0.6 seconds", 40000, 40000 + 0.6 * kSecond, "0 -1 !<l", "0 1 !>g"},
        {"0.4 seconds below day 0", -1.25, -1.25 - 0.4 * kSecond, "0 0 =<lg", "0 0 =l>g"},
        {"just above day 0, just below", 0.1 * kSecond, -0.1 * kSecond, "0 0 =l>g", "0 0 =<lg"},
        {"half a second below day 0", -0.5 * kSecond, 0, "0 1 !>g", "0 -1 !<l"},
    };
    for (const auto& row : kRows) {
        COleDateTime left = {row.left}, right = {row.right};
        const RVDateTime a(left), b(right);
        EXPECT_EQ(Compared(a, b), row.expected) << row.why;
        EXPECT_EQ(Compared(b, a), row.the_other_way) << row.why;
    }
}

TEST(DateTime, AddsOnTheCalendar) {
    constexpr struct {
        const char* from;
        int years, months, days;
        const char* expected;
        const char* codes = "";
    } kRows[] = {
        {"20010131000000", 0, 1, 0, "20010228000000"},
        {"20000131000000", 0, 1, 0, "20000229000000"},
        {"20000229000000", 1, 0, 0, "20010228000000"},
        {"20000229000000", 4, 0, 0, "20040229000000"},
        {"20010331000000", 0, 1, 0, "20010430000000"},
        {"20011115000000", 0, 3, 0, "20020215000000"},
        {"20011215000000", 0, 1, 0, "20020115000000"},
        {"20001231000000", 0, 2, 0, "20010228000000"},
        {"20010331000000", 0, -1, 0, "20010228000000"},
        {"20010315000000", 0, 13, 0, "20020415000000"},
        {"20010315000000", 0, -14, 0, "20000115000000"},
        {"20010115000000", 0, -1, 0, "20001215000000"},
        {"20010101000000", 0, 0, -1, "20001231000000"},
        {"20010131102030", 0, 1, 1, "20010301102030"},
        {"18991231060000", 0, 0, -2, "18991229060000"},
        {"01010301000000", -1, 0, -1, "01000228000000"},
        {"99991231000000", 0, 1, 0, "99991231000000"},      // out of the calendar: only the days,
        {"20010101000000", 65536, 0, 0, "20010101000000"},  // and years are cut to 16 bits
        {"99990131000000", 0, 1, 0, "99990228000000", " 13"},
        {"20010131000000", INT_MAX, INT_MAX, 1, "20010201000000"},
    };
    for (const auto& row : kRows) {
        RVString from(row.from);
        RVDateTime object(from);
        ReportRecorder reports;
        object.Add_Date(row.years, row.months, row.days);
        EXPECT_EQ(Db_Of(object), row.expected) << row.from << ' ' << row.months;
        EXPECT_EQ(Codes(reports), row.codes) << row.from << ' ' << row.months;
    }
}

// A moment by seconds since the first one, in a calendar that is not ours.
struct Moment {
    using Days = std::chrono::sys_days;
    static constexpr Days kFirst = std::chrono::year(100) / 1 / 1;
    static constexpr Days kBehindLast = std::chrono::year(10000) / 1 / 1;
    static constexpr std::int64_t kCount = (kBehindLast - kFirst).count() * std::int64_t{86400};

    static constexpr std::int64_t kDay0 =
        (Days(std::chrono::year(1899) / 12 / 30) - kFirst).count() * std::int64_t{86400};

    std::string Text() const {
        if (seconds < 0 || seconds >= kCount) return "Invalid DateTime";
        const std::chrono::year_month_day date(kFirst + std::chrono::days(seconds / 86400));
        const int second = static_cast<int>(seconds % 86400);
        char text[80];
        std::snprintf(text, sizeof text, "%04d%02u%02u%02d%02d%02d", int(date.year()),
                      unsigned(date.month()), unsigned(date.day()), second / 3600, second / 60 % 60,
                      second % 60);
        return text;
    }

    std::int64_t seconds;
};

TEST(DateTime, RandomSumsAndOrders) {
    constexpr std::uint64_t kSeed = 20260101;
    SCOPED_TRACE("seed " + std::to_string(kSeed));
    std::mt19937_64 random(kSeed);
    const auto pick = [&random](std::int64_t last) {
        return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(last + 1));
    };
    Moment before = {Moment::kDay0};
    RVDateTime earlier;
    for (int i = 0; i < 1'000'000; ++i) {
        // Half of them near day 0, where the scale of numbers turns.
        Moment moment = {i % 2 ? pick(Moment::kCount - 1)
                               : Moment::kDay0 - 500'000 + pick(1'000'000)};
        RVString text(moment.Text().c_str());
        RVDateTime object(text);
        ASSERT_EQ(object < earlier, moment.seconds < before.seconds) << text.GetString();
        ASSERT_EQ(object == earlier, moment.seconds == before.seconds) << text.GetString();
        earlier = object;
        before = moment;

        const int range = i % 3 ? 100'000 : 100'000'000;
        const int hours = static_cast<int>(pick(range) - range / 2) / 3600;
        const int minutes = static_cast<int>(pick(range) - range / 2) / 60;
        const int seconds = static_cast<int>(pick(range) - range / 2);
        const int days = static_cast<int>(pick(range) - range / 2) / 86400;
        object.Add_Time(hours, minutes, seconds);
        moment.seconds += hours * std::int64_t{3600} + minutes * std::int64_t{60} + seconds;
        ASSERT_EQ(Db_Of(object), moment.Text())
            << text.GetString() << ' ' << hours << ' ' << minutes << ' ' << seconds;
        if (moment.seconds < 0 || moment.seconds >= Moment::kCount) continue;
        object.Add_Date(0, 0, days);
        moment.seconds += days * std::int64_t{86400};
        ASSERT_EQ(Db_Of(object), moment.Text()) << text.GetString() << ' ' << days;
    }
}

TEST(DateTime, LeapYearsAndDaysOfTheWeek) {
    ReportRecorder reports;
    for (int year = -1; year <= 10000; ++year) {
        const bool known = year >= 1 && year <= 9998;
        ASSERT_EQ(RVDateTime::Is_Leap_Year(year), known && std::chrono::year(year).is_leap())
            << year;
        ASSERT_EQ(Codes(reports), known ? "" : " 13") << year;
    }
    for (auto day = Moment::kFirst; day < Moment::kBehindLast; day += std::chrono::days(97)) {
        const std::int64_t days = (day - Moment::kFirst).count();
        RVString text(Moment{days * 86400}.Text().c_str());
        ASSERT_EQ(RVDateTime(text).Get_Day_Of_Week(),
                  static_cast<short>(std::chrono::weekday(day).c_encoding() + 1))
            << text.GetString();
    }
}

TEST(DateTime, CountsOfSeconds) {
    constexpr struct {
        const char* why;
        const char* zone;
        LONG time70;
        const char* local;
        LONG time80;
    } kRows[] = {
        {"UTC", "UTC0", 315532800, "19800101000000", 0},
        {"one hour east, in summer", "CET-1CEST", 962452800, "20000701140000", 646927200},
        {"west, without summer time", "EST5", 315550800, "19800101000000", 0},
        {"west in winter", "EST5EDT", 1609520400, "20210101120000", 1293969600},
        {"west in summer", "EST5EDT", 1625155200, "20210701120000", 1309608000},
        {"half an hour", "IST-5:30", 1700000000, "20231115034320", 1384487000},
        {"45 minutes", "NPT-5:45", 1700000000, "20231115035820", 1384487900},
        {"last second of 32 bits", "UTC0", INT_MAX, "20380119031407", 1831950847},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        rv_test::Set_Time_Zone(row.zone);
        RVDateTime from70(row.time70, false), from80(row.time80, true);
        EXPECT_EQ(Db_Of(from70), row.local);
        EXPECT_EQ(Db_Of(from80), row.local);
        EXPECT_EQ(Seconds_Of(from70, false), std::to_string(row.time70));
        EXPECT_EQ(Seconds_Of(from70, true), std::to_string(row.time80));
        EXPECT_EQ(from70.Time70_To_Time80(row.time70), row.time80);
        EXPECT_EQ(from70.Time80_To_Time70(row.time80), row.time70);
    }
}

TEST(DateTime, CountsThatAreNone) {
    constexpr struct {
        const char* why;
        const char* zone;
        const char* local;
        const char *time70, *time80;  // with the codes reported
    } kRows[] = {
        {"before 1970", "XYZ-14", "19691231235959", "0", "0"},
        {"before 1980", "UTC0", "19790101000000", "283996800", "0"},
        {"behind the last second of 32 bits", "UTC0", "20380119031408", "-2147483648", "0 13"},
        {"where the low 32 bits begin anew", "UTC0", "21060207062816", "0", "-315532800"},
        {"early in 1970, east", "XYZ-14", "19700101000000", "thrown 77", "0"},
        {"year 9999", "UTC0", "99991231235959", "thrown 77", "thrown 77"},
    };
    ReportRecorder reports;
    for (const auto& row : kRows) {
        rv_test::Set_Time_Zone(row.zone);
        RVString text(row.local);
        RVDateTime object(text);
        for (const bool time80 : {false, true}) {
            const std::string seconds = Seconds_Of(object, time80);
            EXPECT_EQ(seconds + Codes(reports), time80 ? row.time80 : row.time70) << row.why;
        }
    }
    RVDateTime none(-1, false), wrapped(INT_MAX, true);
    EXPECT_EQ(Held_By(none), "1 0");
    EXPECT_EQ(Held_By(wrapped), "0 25569");
    EXPECT_EQ(none.Time70_To_Time80(-1), 0);
    EXPECT_EQ(none.Time80_To_Time70(INT_MIN), 0);
    EXPECT_EQ(Codes(reports), " 13 13 13");
    const FailingAllocation failing(0);
    RVDateTime nothing(0, false);
    EXPECT_EQ(Held_By(nothing) + Codes(reports), "none 23");
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
        {"other white space", "1980\t1\n2\v3\f4\r5", "1980/1/2/3/4/5/"},
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
        beyond.Get_Db_Value(text);
        EXPECT_STREQ(text, "Invalid DateTime");
    };
    const auto check = [&] { EXPECT_STREQ(text, "before"); };
    EXPECT_GT(rv_test::Sweep_Exceptions(get_text, check), 0);
}

}  // namespace
