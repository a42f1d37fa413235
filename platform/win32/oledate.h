// Moments as OLE Automation dates, and the calendar records that they are made from and read into.
//
// An OLE Automation date counts days from 30 December 1899. Its fraction is the time of day; below
// zero the fraction still runs forward through the day, as a magnitude: -1.25 is 29 December 1899
// 06:00:00. Dates are Gregorian throughout, from 1 January 100 to 31 December 9999. The numbers
// from -1 to 0, both left out, lie on day 0, like those with a plus sign.
//
// All functions may be called from any thread.
#pragma once

#include "../export.h"
#include "types.h"

using DATE = double;

struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;      // 1 is January
    WORD wDayOfWeek;  // 0 is Sunday
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};

struct UDATE {
    SYSTEMTIME st;
    USHORT wDayOfYear;  // 1 is 1 January
};

// Makes the number of a calendar form; its day of week and milliseconds are not looked at. Gives 1,
// or 0 for a form that is no moment of the range, and the number is then as it was.
[[nodiscard]] RVPLATFORM_API INT SystemTimeToVariantTime(SYSTEMTIME* form, DATE* number) noexcept;

// Reads a number to the nearest second, milliseconds 0. Gives 1, or 0 for a number outside of the
// range, and the form is then as it was. The exact inverse of SystemTimeToVariantTime.
[[nodiscard]] RVPLATFORM_API INT VariantTimeToSystemTime(DATE number, SYSTEMTIME* form) noexcept;

// The same with the day of the year. Gives 0, or E_INVALIDARG for a number outside of the range and
// for flags other than 0.
[[nodiscard]] RVPLATFORM_API HRESULT VarUdateFromDate(DATE number, ULONG flags,
                                                      UDATE* parts) noexcept;
