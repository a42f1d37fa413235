// The date-time picker.
#pragma once

#include "COleDateTime.h"
#include "CWnd.h"

// A control that shows a moment to the second, or, with the style DTS_SHOWNONE, possibly no date.
//
// Moments from 14 September 1752 00:00:00 to 31 December 9999 00:00:00 can be shown. A new control
// shows the present local moment; with DTS_SHOWNONE, no date until it is given one.
class RVPLATFORM_API CDateTimeCtrl : public CWnd {
public:
    // Makes the control as a child of `parent`, which is not null; WS_CHILD is added to `style`.
    // FALSE on failure, as CreateEx.
    virtual BOOL Create(DWORD style, const RECT& place, CWnd* parent, UINT id);

    // Non-zero when `value` was filled: with the moment that is shown, or with number 0.0 and
    // status null for no date. Zero without a window, with `value` as it was.
    BOOL GetTime(COleDateTime& value) const;

    // Shows the moment of `value`, to the nearest second, or no date for the status null. Zero when
    // the control does not show it now, but what it did: an invalid value, a number that is no
    // moment or out of the range above, null without DTS_SHOWNONE, and without a window.
    BOOL SetTime(const COleDateTime& value);
};
