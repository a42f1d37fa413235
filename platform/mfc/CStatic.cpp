#include "CStatic.h"

BOOL CStatic::Create(const char* text, DWORD style, const RECT& place, CWnd* parent, UINT id) {
    return CreateEx(0, "Static", text, style | WS_CHILD, place, parent, id);
}
