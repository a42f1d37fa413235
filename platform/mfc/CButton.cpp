#include "CButton.h"

BOOL CButton::Create(const char* text, DWORD style, const RECT& place, CWnd* parent, UINT id) {
    return CreateEx(0, "Button", text, style | WS_CHILD, place, parent, id);
}

void CButton::DrawItem(DRAWITEMSTRUCT*) {}

BOOL CButton::OnChildNotify(UINT message, WPARAM first, LPARAM second, LRESULT* result) {
    if (message != WM_DRAWITEM) return CWnd::OnChildNotify(message, first, second, result);
    DrawItem(reinterpret_cast<DRAWITEMSTRUCT*>(second));
    *result = TRUE;
    return TRUE;
}
