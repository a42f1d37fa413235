#include "CButton.h"

BOOL CButton::Create(const char* text, DWORD style, const RECT& place, CWnd* parent, UINT id) {
    return CreateEx(0, "Button", text, style | WS_CHILD, place, parent, id);
}
