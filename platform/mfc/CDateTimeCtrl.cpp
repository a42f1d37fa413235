#include "CDateTimeCtrl.h"

#include <cmath>
#include <cstring>

namespace {

BOOL Show(HWND control, WPARAM kind, SYSTEMTIME& form) {
    return SendMessageA(control, DTM_SETSYSTEMTIME, kind, reinterpret_cast<LPARAM>(&form)) != 0;
}

LRESULT Shown(HWND control, SYSTEMTIME& form) {
    // A message to no window is answered by 0, too, which is GDT_VALID.
    if (!::IsWindow(control)) return GDT_ERROR;
    return SendMessageA(control, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&form));
}

// The system's control takes a moment out of its range without a word, and goes on showing what it
// did; so what it shows afterwards is the answer.
BOOL Show_Moment(HWND control, SYSTEMTIME& form) {
    SYSTEMTIME shown = {};
    return Show(control, GDT_VALID, form) && Shown(control, shown) == GDT_VALID &&
           std::memcmp(&shown, &form, sizeof form) == 0;
}

}  // namespace

BOOL CDateTimeCtrl::Create(DWORD style, const RECT& place, CWnd* parent, UINT id) {
    const INITCOMMONCONTROLSEX families = {sizeof families, ICC_DATE_CLASSES};
    return InitCommonControlsEx(&families) &&
           CreateEx(0, DATETIMEPICK_CLASSA, "", style | WS_CHILD, place, parent, id);
}

BOOL CDateTimeCtrl::GetTime(COleDateTime& value) const {
    SYSTEMTIME form = {};
    DATE number = 0.0;
    switch (Shown(m_hWnd, form)) {
        case GDT_VALID:
            if (!SystemTimeToVariantTime(&form, &number)) return FALSE;
            value = {number, COleDateTime::valid};
            return TRUE;
        case GDT_NONE:
            value = {0.0, COleDateTime::null};
            return TRUE;
        default:
            return FALSE;
    }
}

BOOL CDateTimeCtrl::SetTime(const COleDateTime& value) {
    SYSTEMTIME form = {};
    if (value.m_status == COleDateTime::null) return Show(m_hWnd, GDT_NONE, form);
    // Some implementations read a moment even from what is not a number.
    const bool is_moment = value.m_status == COleDateTime::valid && !std::isnan(value.m_dt) &&
                           VariantTimeToSystemTime(value.m_dt, &form);
    return is_moment && Show_Moment(m_hWnd, form);
}
