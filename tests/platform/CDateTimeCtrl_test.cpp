// The date-time picker, and the windows under it.
#include <RVUtils/CDateTimeCtrl.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <thread>

#include "allocation_sweep.h"
#include "shown_picker.h"
#include "time_zone.h"

namespace {

using namespace rv_test;

constexpr COleDateTime At(DATE number) {
    return {number, COleDateTime::valid};
}
constexpr COleDateTime kNoDate = {0.0, COleDateTime::null};
constexpr COleDateTime kUntouched = {12345.5, COleDateTime::invalid};

// kUntouched: the control does not tell.
void Expect_Shown(const CDateTimeCtrl& control, const COleDateTime& expected, const char* why) {
    COleDateTime value = kUntouched;
    EXPECT_EQ(control.GetTime(value) != FALSE, expected.m_status != COleDateTime::invalid) << why;
    EXPECT_EQ(value.m_status, expected.m_status) << why;
    EXPECT_DOUBLE_EQ(value.m_dt, expected.m_dt) << why;
}

TEST(CDateTimeCtrl, ShowsWhatItIsGivenOrWhatItDid) {
    constexpr DATE kSecond = 1.0 / 86400;
    constexpr struct {
        const char* why;
        COleDateTime value;
        bool shown;
    } kRows[] = {
        {"3 February 2001 04:05:06", At(36925 + 14706 * kSecond), true},
        {"evening of a negative number", At(-1.75), true},
        {"14 September 1752", At(-53797), true},
        {"a second later", At(-53797 - kSecond), true},
        {"a second before it", At(-53798 - 86399 * kSecond), false},
        {"1 January 1601", At(-109205), false},
        {"31 December 9999", At(2958465), true},
        {"a second behind it", At(2958465 + kSecond), false},
        {"the year 10000", At(2958466), false},
        {"not a number", At(std::numeric_limits<DATE>::quiet_NaN()), false},
        {"invalid", {36925, COleDateTime::invalid}, false},
    };
    constexpr COleDateTime kBefore = At(38477.25);
    for (const DWORD style : {DWORD{0}, DWORD{DTS_SHOWNONE}}) {
        ShownPicker picker(style), other(style);
        EXPECT_TRUE(other.control.SetTime(kBefore));
        for (const auto& row : kRows) {
            EXPECT_TRUE(picker.control.SetTime(kBefore));
            const bool none = picker.control.SetTime({36925, COleDateTime::null}) != FALSE;
            EXPECT_EQ(none, style == DTS_SHOWNONE);
            Expect_Shown(picker.control, none ? kNoDate : kBefore, "before");
            EXPECT_EQ(picker.control.SetTime(row.value) != FALSE, row.shown) << row.why;
            Expect_Shown(picker.control, row.shown ? row.value : none ? kNoDate : kBefore, row.why);
        }
        Expect_Shown(other.control, kBefore, "another control");
    }
}

TEST(CDateTimeCtrl, BeginsWithThePresentMomentOrNone) {
    double offset = 0, slack = 50400;
#if !defined(_WIN32)  // the system's control is in the zone of the machine, wherever that is
    Set_Time_Zone("IST-5:30");
    offset = 19800, slack = 2;
#endif
    const ShownPicker picker, maybe_none(DTS_SHOWNONE);
    COleDateTime shown = kNoDate;
    EXPECT_TRUE(picker.control.GetTime(shown));
    const double seconds = (shown.m_dt - 25569) * 86400;
    EXPECT_NEAR(seconds, static_cast<double>(_time64(nullptr)) + offset, slack);
    Expect_Shown(maybe_none.control, kNoDate, "none");
}

void Expect_No_Window(CDateTimeCtrl& control, const char* why) {
    EXPECT_FALSE(control.SetTime(At(36925)) || control.SetTime(kNoDate)) << why;
    Expect_Shown(control, kUntouched, why);
    EXPECT_FALSE(control.DestroyWindow()) << why;
}

TEST(CDateTimeCtrl, HasNoWindowBeforeAndAfterItsLife) {
    CDateTimeCtrl control;
    EXPECT_FALSE(control.CreateEx(0, "SysDateTimePick33", "", 0, kPickerPlace, nullptr, 1));
    EXPECT_FALSE(control.Create(0, kPickerPlace, nullptr, 1));
    Expect_No_Window(control, "never made");
    ParentWindow parent;
    EXPECT_TRUE(control.Create(DTS_SHOWNONE, kPickerPlace, &parent, 1));
    EXPECT_FALSE(control.Create(DTS_SHOWNONE, kPickerPlace, &parent, 1));
    EXPECT_TRUE(control.DestroyWindow());
    Expect_No_Window(control, "destroyed");
    EXPECT_TRUE(control.Create(DTS_SHOWNONE, kPickerPlace, &parent, 1));
    EXPECT_TRUE(parent.DestroyWindow());
    Expect_No_Window(control, "ended with its parent");
    HWND const ended = ShownPicker().control.GetSafeHwnd();
    EXPECT_TRUE(ended && !IsWindow(ended));
}

TEST(CDateTimeCtrl, SurvivesMissingMemory) {
    [[maybe_unused]] const long failures = Sweep_Allocations([] {
        ShownPicker picker;
        EXPECT_NE(picker.control.SetTime(At(36925)) != FALSE, FailingAllocation::Failed());
    });
#if !defined(_WIN32)  // where the memory of windows is the system's
    EXPECT_EQ(failures, 2);
#endif
}

TEST(Window, EndsWithItsParentAndItsThread) {
    const auto make = [](DWORD style, HWND parent) {
        return CreateWindowExA(0, DATETIMEPICK_CLASSA, "", style, 0, 0, 200, 24, parent, nullptr,
                               nullptr, nullptr);
    };
    HWND top = nullptr, owned = nullptr;
    std::thread([make, &top, &owned] {
        top = make(WS_POPUP, nullptr);
        HWND const child = make(WS_CHILD, top), sister = make(WS_CHILD, top);
        HWND const inner = make(WS_CHILD, child);
        owned = make(WS_POPUP, inner);  // by the top one: a child owns nothing
        EXPECT_TRUE(DestroyWindow(child));
        EXPECT_FALSE(IsWindow(child) || IsWindow(inner) || DestroyWindow(inner));
        EXPECT_TRUE(IsWindow(top) && IsWindow(sister) && IsWindow(owned));
        EXPECT_EQ(make(WS_CHILD, nullptr), nullptr);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_TLW_WITH_WSCHILD});
        EXPECT_EQ(make(WS_CHILD, inner), nullptr);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_WINDOW_HANDLE});
    }).join();
    EXPECT_FALSE(IsWindow(top) || IsWindow(owned));
}

TEST(Window, PickerKeepsMillisecondsAndFindsTheDayOfWeek) {
    const ShownPicker picker;
    SYSTEMTIME form = {2001, 2, 1, 3, 4, 5, 6, 789};  // a Saturday
    const auto send = [&](UINT message, WPARAM kind) {
        return SendMessageA(picker.control.m_hWnd, message, kind, reinterpret_cast<LPARAM>(&form));
    };
    EXPECT_EQ(send(DTM_SETSYSTEMTIME, GDT_VALID), 1);
    form.wMilliseconds = 1000;
    EXPECT_EQ(send(DTM_SETSYSTEMTIME, GDT_VALID), 0);
    EXPECT_EQ(send(DTM_GETSYSTEMTIME, 0), GDT_VALID);
    const SYSTEMTIME expected = {2001, 2, 6, 3, 4, 5, 6, 789};
    EXPECT_EQ(std::memcmp(&form, &expected, sizeof form), 0);
}

}  // namespace
