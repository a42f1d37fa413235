// The date-time picker, a built-in window class.
//
// It shows a moment, or no date where its style lets it. What it can show runs from 14 September
// 1752 00:00:00 to 31 December 9999 00:00:00, in milliseconds. A fresh one shows the present moment
// of the process's zone (see crttime.h); with DTS_SHOWNONE it shows no date until it is given one.
#pragma once

#include "../export.h"
#include "oledate.h"
#include "types.h"

#define DATETIMEPICK_CLASSA "SysDateTimePick32"

inline constexpr DWORD DTS_SHOWNONE = 2;  // style: it may show no date

inline constexpr int GDT_ERROR = -1;
inline constexpr int GDT_VALID = 0;
inline constexpr int GDT_NONE = 1;

// Reads what is shown into the SYSTEMTIME that the second parameter points to. Answers GDT_VALID,
// or GDT_NONE for no date, with the record as it was. GDT_ERROR for null.
inline constexpr UINT DTM_GETSYSTEMTIME = 0x1001;

// Shows the SYSTEMTIME that the second parameter points to, whose day of week is not looked at
// (first parameter GDT_VALID), or no date (GDT_NONE). Answers 1, or 0 for what it cannot show, and
// for null; it then shows what it did.
inline constexpr UINT DTM_SETSYSTEMTIME = 0x1002;

inline constexpr DWORD ICC_LISTVIEW_CLASSES = 0x1;
inline constexpr DWORD ICC_TAB_CLASSES = 0x8;
inline constexpr DWORD ICC_DATE_CLASSES = 0x100;

struct INITCOMMONCONTROLSEX {
    DWORD dwSize;  // of this record
    DWORD dwICC;   // families of classes
};

// Whether the classes are there: TRUE for the families above. Any thread.
[[nodiscard]] RVPLATFORM_API BOOL
InitCommonControlsEx(const INITCOMMONCONTROLSEX* families) noexcept;

namespace rv {

class Window;

// For the window system: a picker without a handle, null without memory.
[[nodiscard]] Window* Make_Date_Time_Picker() noexcept;

}  // namespace rv
