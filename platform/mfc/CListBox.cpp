#include "CListBox.h"

namespace {

int Ask(HWND list, UINT message, int row, LPARAM second = 0) {
    // A message to no window is answered by 0.
    if (!::IsWindow(list)) return LB_ERR;
    return static_cast<int>(
        SendMessageA(list, message, static_cast<WPARAM>(static_cast<INT_PTR>(row)), second));
}

}  // namespace

BOOL CListBox::Create(DWORD style, const RECT& place, CWnd* parent, UINT id) {
    return CreateEx(0, "ListBox", "", style | WS_CHILD, place, parent, id);
}

int CListBox::GetCount() const {
    return Ask(m_hWnd, LB_GETCOUNT, 0);
}

int CListBox::GetTextLen(int row) const {
    return Ask(m_hWnd, LB_GETTEXTLEN, row);
}

void CListBox::GetText(int row, CString& text) const {
    const int length = GetTextLen(row);
    if (length < 0) return;
    char* const buffer = text.GetBuffer(length);
    text.ReleaseBuffer(Ask(m_hWnd, LB_GETTEXT, row, reinterpret_cast<LPARAM>(buffer)));
}

int CListBox::AddString(const char* text) {
    return Ask(m_hWnd, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
}

int CListBox::InsertString(int row, const char* text) {
    return Ask(m_hWnd, LB_INSERTSTRING, row, reinterpret_cast<LPARAM>(text));
}
