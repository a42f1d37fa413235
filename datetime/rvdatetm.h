// The suite's date-time type.
#pragma once

#include <cstddef>
#include <memory>

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/heap.h"
#include "../platform/mfc/COleDateTime.h"

// One moment on the local wall clock, to the second, with no time zone; or a status that says that
// there is none. Moments run from 1 January 100 00:00:00 to 31 December 9999 23:59:59 on the
// Gregorian calendar.
//
// Status:
// - `valid`: there is a moment. A fresh object holds 30 December 1899 00:00:00.
// - `invalid`: a setter was given parts that are no moment. It may still be set anew.
// - `null`: copied from a COleDateTime, or another object, that is null. No operation sets it by
//   itself.
// An object whose memory could not be had has no held value. Every operation then reports code 18,
// changes nothing, and gives false, or 0.
//
// The database text is the lasting form of a moment: 14 digits, year to second, zero-padded, with
// no separators: "20010203040506" is 3 February 2001 04:05:06. Years below 1000 have four digits,
// too.
//
// Reports go to pProgrammer_Error, file "rvdatetm":
//   13  a database text is no moment for a constructor, or has not 14 characters; a text is asked
//       for from an object that is null
//   17  parts given to a setter are no moment
//   18  the object, or the one to copy, has no held value
//   23  no memory for the held value; told by a constructor, which ends normally
// Operations that give a text throw CMemoryException* when there is no memory for it, and the
// argument is as it was. Nothing else throws.
//
// An object belongs to one thread at a time. All objects share the zone of the process, TZ.
class RVUTILS_API RVDateTime {
public:
    RVDateTime();
    // A copy of number and status. A source without held value makes the new object `invalid`.
    RVDateTime(const RVDateTime& other);
    // From database text, as Set_Db_Value. A text that is refused is reported with code 13, after
    // what Set_Db_Value reports, and leaves 30 December 1899 00:00:00.
    RVDateTime(RVString& db_text);
    // Takes number and status as they are.
    RVDateTime(COleDateTime& value);
    virtual ~RVDateTime();

    // As the copy constructor; a source without held value leaves the number as it was.
    RVDateTime& operator=(const RVDateTime& other);

    // Sets the moment from database text; the empty text stands for 1 January 1980 00:00:01. Each
    // field may also begin with white space and a sign, and end early: " 1" and "1x" read as 1.
    // False leaves the object as it was; code 13 is reported only for a text that has not 14
    // characters.
    [[nodiscard]] bool Set_Db_Value(RVString& db_text);
    // Gives the database text. An `invalid` object gives the application's string resource 55296,
    // cut to 255 characters, or "Invalid DateTime" where there is none; a `null` one gives the
    // empty text and reports code 13.
    void Get_Db_Value(RVString& db_text);
    // Whether Set_Db_Value would take the text; but the empty one is refused. Reports nothing.
    [[nodiscard]] static bool Validate_Db_Value(RVString& db_text);
    // Gives the database text of the present moment on the local wall clock.
    static void Get_Current_Db_Value(RVString& db_text);

    // The parts of the moment. -1 when there is none, 0 without held value.
    short Get_Year();
    short Get_Month();  // 1 is January
    short Get_Day();
    short Get_Hour();
    short Get_Minute();
    short Get_Second();

    // Sets the moment. Parts that are none make the object `invalid`: code 17, false.
    [[nodiscard]] bool Set_Value(short year, short month, short day, short hour, short minute,
                                 short second);
    // Sets the date and keeps the time of day, or the other way round. Parts that are no date or no
    // time leave the object as it was: code 17, false. Where there was no moment before, the object
    // ends `invalid`, with no report, and the result is true.
    [[nodiscard]] bool Set_Date_Value(short year, short month, short day);
    [[nodiscard]] bool Set_Time_Value(short hour, short minute, short second);

    // Number and status as they are, in and out. False only without held value.
    bool Set_Value(COleDateTime& value);
    void Get_Value(COleDateTime& value);

    // Sets the present moment on the local wall clock. The form that also gives a text is not
    // offered yet.
    void Get_Current_Value(std::nullptr_t);

private:
    using HeldValue = std::unique_ptr<COleDateTime, rv::HeapDeleter>;

    static HeldValue Make_Held_Value(const COleDateTime& value) noexcept;
    void Init_Db_Date(RVString& db_text);

    HeldValue m_Value;  // null only where its memory could not be had
};
