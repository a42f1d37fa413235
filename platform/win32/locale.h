// Dates and times as texts of the user's locale, both ways.
//
// The user's locale is what LC_ALL, else LC_TIME, else LANG names at the call, found where LOCPATH
// says; whether the process ever called setlocale does not matter. The names C and POSIX, those
// that begin with "C.", and those that the system does not know stand for the invariant forms
// "02/01/2003", month first, and "04:05:06".
//
// Narrow texts are bytes of that locale's encoding. Wide ones are what MultiByteToWideChar makes of
// such bytes in the calling thread, whatever its own encoding.
//
// What is formatted:
// - The short date is the locale's %x, the time its %X. No zone is told.
// - The year has four digits. Where the locale gives it two, only those from 1930 to 2029 have
// them.
//   Where the locale counts years from another era, such as the Buddhist one, it is that count.
// - A 12-hour clock without words for a.m. and p.m. becomes one of 24 hours.
// - A short date that could not be read back for certain is replaced by the plain one: numbers in
//   the locale's order of fields, in ASCII digits, with four digits for the year.
// So a short date that is formatted reads back as the same date, in every locale.
//
// What is read:
// - The locale's own forms, in its own digits too; numbers in its order of fields, apart by one of
//   / - . , or blanks; months by their names, long or short, in either case, where the order is
//   free as far as it is unambiguous. Weekdays may stand there and are not compared.
// - Year, month and day in this order where the first number has more than two digits, unless the
//   locale begins with the year itself and goes on otherwise.
// - A year of one or two digits is one from 1930 to 2029. A date needs its year.
// - Hours and minutes, with seconds or without, with a.m. or p.m. in the locale's words or as AM
//   and PM, before the date or behind it; the full hour with one of these words. Where times have
//   dots, as in Finnish, three numbers alone are a date if they can be one, unless only the time is
//   asked for.
// - Texts of more than 255 characters are refused.
//
// Any thread, as long as none changes the environment meanwhile. The locales used last are kept,
// eight for all threads and one a thread.
#pragma once

#include "../export.h"
#include "bstr.h"
#include "oledate.h"
#include "types.h"

inline constexpr LCID LOCALE_USER_DEFAULT = 0x400;

inline constexpr DWORD DATE_SHORTDATE = 1;
inline constexpr DWORD LOCALE_NOUSEROVERRIDE = 0x80000000;  // nobody overrides anything here
inline constexpr ULONG VAR_TIMEVALUEONLY = 1;
inline constexpr ULONG VAR_DATEVALUEONLY = 2;

inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005);

// Writes the short date, or the time, with its terminator, and gives the length with that. With
// `room` 0 nothing is written, and the result is the room that it takes.
//
// `locale` is LOCALE_USER_DEFAULT, `flags` DATE_SHORTDATE for the date and 0 for the time,
// `picture` null. Of `moment` only the date, or only the time of day, is looked at. Gives 0 on
// failure, with the buffer as it was: ERROR_INSUFFICIENT_BUFFER when the room does not do, or for
// more than 255 characters; ERROR_INVALID_FLAGS; ERROR_INVALID_PARAMETER for any other argument
// than these, and for no date from the year 100 to 9999 or no time of day;
// ERROR_NOT_ENOUGH_MEMORY when there is none to take the locale in.
[[nodiscard]] RVPLATFORM_API int GetDateFormatA(LCID locale, DWORD flags, const SYSTEMTIME* moment,
                                                LPCSTR picture, LPSTR buffer, int room) noexcept;
[[nodiscard]] RVPLATFORM_API int GetTimeFormatA(LCID locale, DWORD flags, const SYSTEMTIME* moment,
                                                LPCSTR picture, LPSTR buffer, int room) noexcept;

// Hands out the plain date of a moment as a new text, which the caller frees. `flags` hold
// VAR_DATEVALUEONLY, and may hold LOCALE_NOUSEROVERRIDE. E_INVALIDARG for others, another locale,
// null, and a number out of range; E_OUTOFMEMORY. The pointer is then as it was.
[[nodiscard]] RVPLATFORM_API HRESULT VarBstrFromDate(DATE number, LCID locale, ULONG flags,
                                                     BSTR* text) noexcept;

// Reads a text. `flags` are 0, VAR_TIMEVALUEONLY or VAR_DATEVALUEONLY, and may hold
// LOCALE_NOUSEROVERRIDE. With 0, a date alone is its midnight, and a time alone is on day 0; with
// the others, the half asked for must be there, and the other one is left out.
// DISP_E_TYPEMISMATCH for a text that is no such date, and for null; E_INVALIDARG for other
// arguments; E_OUTOFMEMORY when there is no memory to take the locale in. The number is then as it
// was.
[[nodiscard]] RVPLATFORM_API HRESULT VarDateFromStr(const OLECHAR* text, LCID locale, ULONG flags,
                                                    DATE* number) noexcept;
