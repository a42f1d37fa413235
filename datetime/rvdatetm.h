// The suite's date-time type.
#pragma once

#include <algorithm>
#include <memory>

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/heap.h"
#include "../platform/mfc/CComBSTR.h"
#include "../platform/mfc/CDateTimeCtrl.h"
#include "../platform/mfc/COleDateTime.h"

namespace rv {

// As a part of a day: two moments less than that apart are equal.
inline constexpr DATE kHalfSecond = 1.0 / 172800;

}  // namespace rv

// One moment on the local wall clock, to the second, with no time zone; or a status that says that
// there is none. Moments run from 1 January 100 00:00:00 to 31 December 9999 23:59:59 on the
// Gregorian calendar.
//
// Status:
// - `valid`: there is a moment. A fresh object holds 30 December 1899 00:00:00.
// - `invalid`: a setter was given parts, or a text, that are no moment. It may still be set anew.
// - `null`: copied from a COleDateTime, a date-time picker or another object that is null. No
//   operation sets it by itself.
// An object whose memory could not be had has no held value. Every operation then reports code 18,
// changes neither object nor arguments, and gives false, or 0, where it does not say otherwise.
//
// Other forms of a moment:
// - The database text is the lasting one: 14 digits, year to second, zero-padded, with no
//   separators: "20010203040506" is 3 February 2001 04:05:06. Years below 1000 have four digits,
//   too.
// - time70 counts seconds from 1 January 1970 00:00:00 UTC: an instant, the same everywhere. The
//   zone of the process says which moment it is.
// - time80 counts seconds from 1 January 1980 00:00:00 on the local wall clock: the digits on the
//   clock, whatever the zone.
// - The display text is that of the user's locale, date before time; see Get_Value.
//
// Reports go to pProgrammer_Error, file "rvdatetm":
//   12  the output pointer for a wide text is null
//   13  a database text is no moment for a constructor, or has not 14 characters; a text is asked
//       for from an object that is null; an argument is out of its range, or a count of seconds
//       beyond what the platform's local time expresses
//   17  parts given to a setter are no moment
//   18  the object, or the one to copy, has no held value
//   23  no memory for the held value; told by a constructor, which ends normally
//   25  Set_Hour, Set_Minute or Set_Second of an object that had no moment
//   28  a wide text is asked for from an object that is null
// Operations that take or give a text throw CMemoryException* when there is no memory for it; the
// object and the argument are as they were. Only Get_Value(LONG&, bool) throws anything else.
//
// An object belongs to one thread at a time. All objects share the zone of the process, TZ, and the
// user's locale; each operation asks for them anew.
class RVUTILS_API RVDateTime {
public:
    RVDateTime();
    // A copy of number and status. A source without held value makes the new object `invalid`.
    RVDateTime(const RVDateTime& other);
    // From database text, as Set_Db_Value. A text that is refused is reported with code 13, after
    // what Set_Db_Value reports, and leaves 30 December 1899 00:00:00. Null is the empty text.
    RVDateTime(RVString& db_text);
    RVDateTime(wchar_t* db_text);
    RVDateTime(CComBSTR& db_text);
    // Takes number and status as they are.
    RVDateTime(COleDateTime& value);
    // From a count of seconds, as Set_Value. A time70 that cannot be expressed makes the object
    // `invalid`, without a report.
    RVDateTime(LONG seconds, bool time80);
    virtual ~RVDateTime();

    // As the copy constructor; a source without held value leaves the number as it was.
    RVDateTime& operator=(const RVDateTime& other);

    // ---- database text

    // Sets the moment from database text; the empty text, or null, stands for 1 January 1980
    // 00:00:01. Each field may also begin with white space and a sign, and end early: " 1" and "1x"
    // read as 1. False leaves the object as it was; code 13 is reported only for a text that has
    // not 14 characters.
    [[nodiscard]] bool Set_Db_Value(RVString& db_text);
    [[nodiscard]] bool Set_Db_Value(wchar_t* db_text);
    [[nodiscard]] bool Set_Db_Value(CComBSTR& db_text);
    // Gives the database text. An `invalid` object gives the application's string resource 55296,
    // cut to 255 characters, or "Invalid DateTime" where there is none; a `null` one gives the
    // empty text and reports code 13.
    void Get_Db_Value(RVString& db_text);
    // Hands out a new BSTR, which the caller releases with SysFreeString; what the pointer held
    // before is not released. A `null` object reports code 28 and a null pointer code 12. These two
    // and a BSTR for which there is no memory, which is told by pProgrammer_Trace with level 1,
    // leave the argument as it was.
    void Get_Db_Value(wchar_t** db_text);
    // The same into an owner, which releases what it held before.
    void Get_Db_Value(CComBSTR& db_text);
    // Whether Set_Db_Value would take the text; but the empty one is refused. Reports nothing.
    [[nodiscard]] static bool Validate_Db_Value(RVString& db_text);
    // Gives the database text of the present moment on the local wall clock.
    static void Get_Current_Db_Value(RVString& db_text);

    // ---- parts

    // The parts of the moment. -1 when there is none, 0 without held value.
    short Get_Year();
    short Get_Month();  // 1 is January
    short Get_Day();
    short Get_Hour();
    short Get_Minute();
    short Get_Second();
    // 1 is Sunday, 7 is Saturday; -1 when there is no moment, also without held value.
    short Get_Day_Of_Week();

    // Whether 29 February exists, in the years from 1 to 9998. Any other year, such as that of an
    // object without a moment, reports code 13 and gives false.
    bool Is_Leap_Year();
    static bool Is_Leap_Year(int year);

    // Sets the moment. Parts that are none make the object `invalid`: code 17, false.
    [[nodiscard]] bool Set_Value(short year, short month, short day, short hour, short minute,
                                 short second);
    // Sets the date and keeps the time of day, or the other way round. Parts that are no date or no
    // time leave the object as it was: code 17, false. Where there was no moment before, the object
    // ends `invalid`, with no report, and the result is true.
    [[nodiscard]] bool Set_Date_Value(short year, short month, short day);
    [[nodiscard]] bool Set_Time_Value(short hour, short minute, short second);
    // The time of day by its seconds since midnight, 0 to 86399, as the form with three parts.
    // Hours go through 16 bits: a multiple of 235,929,600 seconds, on either side of 0, is
    // midnight.
    [[nodiscard]] bool Set_Time_Value(LONG seconds);
    // Sets one part and keeps the others. A part out of its range leaves the object as it was:
    // code 13, false. Where there was no moment before: code 25, false, and the object is
    // `invalid`.
    [[nodiscard]] bool Set_Hour(short hour);
    [[nodiscard]] bool Set_Minute(short minute);
    [[nodiscard]] bool Set_Second(short second);

    // ---- arithmetic; every amount may be negative

    // Adds years and months on the calendar, then days. A day that the month reached does not have
    // becomes its last one: 31 January 2001 plus 1 month and 1 day is 1 March 2001. Where years and
    // months lead out of the calendar, or there was no moment, only the days are added to the
    // number. The object ends `valid` in every case. Years go through 16 bits: 65,536 of them are
    // none.
    void Add_Date(int years, int months, int days);
    // Adds to the number, and makes the object `valid` in every case. A number led out of the
    // calendar is no moment: its parts read -1.
    void Add_Time(int hours, int minutes, int seconds);

    // ---- comparison; the other object without held value counts as one without a moment

    // By year, month and day: -1 when this is earlier, 1 when it is later, else 0. An object
    // without a moment comes before every date, and two of them are equal.
    short Compare_Date(const RVDateTime& other) const;
    // The same by hour, minute and second; here an object without a moment comes last.
    short Compare_Time(const RVDateTime& other) const;

    // Two moments less than half a second apart are equal, although one may also be less than the
    // other. Two `null` objects are equal, two `invalid` ones are not.
    bool operator==(const RVDateTime& other) const;
    bool operator!=(const RVDateTime& other) const;
    // False when either has no moment; but == alone makes <= and >= true.
    bool operator<(const RVDateTime& other) const {
        return Both_Since_Day_0(other) ? Number() < other.Number() : Is_Less(other);
    }
    bool operator<=(const RVDateTime& other) const {
        return Both_Since_Day_0(other) ? Number() - rv::kHalfSecond < other.Number()
                                       : Is_Less_Or_Equal(other);
    }
    bool operator>(const RVDateTime& other) const {
        return Both_Since_Day_0(other) ? Number() > other.Number() : Is_Greater(other);
    }
    bool operator>=(const RVDateTime& other) const {
        return Both_Since_Day_0(other) ? Number() + rv::kHalfSecond > other.Number()
                                       : Is_Greater_Or_Equal(other);
    }

    // ---- counts of seconds

    // Sets the moment from a count, time80 or time70. A time70 that the platform's local time does
    // not express, a negative one among them: code 13, false, and the object is as it was. A time80
    // that is no time70 is taken for 1 January 1970 00:00:00 UTC: code 13, see Time80_To_Time70,
    // and true.
    [[nodiscard]] bool Set_Value(LONG seconds, bool time80);
    // Gives the count, time80 or time70; 0 before the year from which it counts, without a moment
    // and without held value. An hour that the zone has twice counts as the platform takes it. A
    // moment after 19 January 2038 03:14:07 UTC has no count of 32 bits: its low 32 bits are given
    // as time70, and time80 is what Time70_To_Time80 makes of them. Throws ATL::CAtlException, by
    // value, with E_INVALIDARG where the platform cannot express the instant, such as early on
    // 1 January 1970 east of Greenwich or after the year 3000; the argument is then as it was.
    void Get_Value(LONG& seconds, bool time80);
    // Converts a count by the zone's standard time of today and an hour of daylight saving, and
    // looks at no object. 0 and code 13 where the platform's local time does not express it. In the
    // hour around a change of daylight saving the two may differ by one.
    LONG Time70_To_Time80(LONG time70);
    LONG Time80_To_Time70(LONG time80);

    // ---- COleDateTime

    // Number and status as they are, in and out. False only without held value.
    bool Set_Value(COleDateTime& value);
    void Get_Value(COleDateTime& value);
    // Takes the date of the argument and keeps the object's time of day, or the other way round.
    // Where either has no moment: false, with no report, and the object is `invalid`.
    [[nodiscard]] bool Set_Date_Value(COleDateTime& value);
    [[nodiscard]] bool Set_Time_Value(COleDateTime& value);
    // Gives the argument the object's date and keeps its time of day, or the other way round. Where
    // either has no moment, the argument is `invalid`.
    void Get_Date_Value(COleDateTime& value);
    void Get_Time_Value(COleDateTime& value);

    // ---- date-time picker

    // As the forms with a COleDateTime, with what the control shows. A control that cannot be read
    // leaves the object as it was: false, with no report.
    bool Set_Value(CDateTimeCtrl& control);
    [[nodiscard]] bool Set_Date_Value(CDateTimeCtrl& control);
    [[nodiscard]] bool Set_Time_Value(CDateTimeCtrl& control);
    // Shows the moment, or one half of it beside the other half that the control shows. What the
    // control refuses, it does not show.
    void Get_Value(CDateTimeCtrl& control);
    void Get_Date_Value(CDateTimeCtrl& control);
    void Get_Time_Value(CDateTimeCtrl& control);

    // ---- display text

    // Gives date, one blank and time in the short forms of the user's locale. A date text that the
    // locale's own parser would not read back is replaced by the plain form of the platform. An
    // `invalid` object gives the text that Get_Db_Value gives, and a blank; a `null` one a blank.
    void Get_Value(RVString& text);
    // The date alone. Reports code 13 for 30 December 1899, and for what has no moment and a number
    // between -1 and 1, and gives the text all the same.
    void Get_Date_Value(RVString& text);
    // The time alone; the empty text when there is no moment.
    void Get_Time_Value(RVString& text);
    // Gives "month/day/year hour:minute:second", the same in every locale: "02/01/2003 04:05:06".
    // Without a moment every part is -1: "-01/-01/-0001 -01:-01:-01". Without held value every part
    // is 0 and reports code 18.
    void Get_Fixed_Date_Time(RVString& text);
    // Sets the present moment on the local wall clock, and gives its text as Get_Value does unless
    // the pointer is null. Both do the same.
    void Get_Current_Value(RVString* text);
    void Get_Current_Date(RVString* text);

    // Reads date and time in the forms of the user's locale; a text of one of them has midnight or
    // 30 December 1899 as the other. A text that is neither: false, with no report, and the object
    // is `invalid`.
    [[nodiscard]] bool Set_Value(RVString text);
    // Takes the date of such a text and keeps the object's time of day, or the other way round. A
    // text without it: false, with no report, and the object is as it was. Where there was no
    // moment before: the same, and the object is `invalid`.
    [[nodiscard]] bool Set_Date_Value(RVString& text);
    [[nodiscard]] bool Set_Time_Value(RVString& text);

private:
    using HeldValue = std::unique_ptr<COleDateTime, rv::HeapDeleter>;

    static HeldValue Make_Held_Value(const COleDateTime& value) noexcept;
    void Init_Db_Date(RVString& db_text);
    void Format_Display_String(RVString& text, COleDateTime& value, bool date, bool time);

    // Moments from day 0 on are ordered as their numbers are, so that sorting needs no call.
    bool Both_Since_Day_0(const RVDateTime& other) const {
        const COleDateTime *const left = m_Value.get(), *const right = other.m_Value.get();
        return left && right && (left->m_status | right->m_status) == COleDateTime::valid &&
               std::min(left->m_dt, right->m_dt) >= 0;
    }
    DATE Number() const { return m_Value->m_dt; }
    // The orderings of any two objects.
    bool Is_Less(const RVDateTime& other) const;
    bool Is_Less_Or_Equal(const RVDateTime& other) const;
    bool Is_Greater(const RVDateTime& other) const;
    bool Is_Greater_Or_Equal(const RVDateTime& other) const;

    HeldValue m_Value;  // null only where its memory could not be had
};
