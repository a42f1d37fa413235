#include "RVListBox.h"

#include <cstring>

#include "../platform/mfc/CDC.h"

RVListBox::RVListBox() = default;

RVListBox::~RVListBox() = default;

int RVListBox::AddString(const char* text) {
    if (!text) text = "";
    Adjust_Horizontal_Scroll(text);
    return CListBox::AddString(text);
}

int RVListBox::InsertString(int row, const char* text) {
    if (!text) text = "";
    Adjust_Horizontal_Scroll(text);
    return CListBox::InsertString(row, text);
}

bool RVListBox::Validate_Text(CString& text, ULONG own_row) {
    CString present;
    const int count = GetCount();
    for (int row = 0; row < count; ++row) {
        GetText(row, present);
        if (present.CompareNoCase(text) == 0 && static_cast<ULONG>(row) != own_row) return false;
    }
    return true;
}

void RVListBox::Adjust_Horizontal_Scroll(const char* text) {
    if (!::IsWindow(m_hWnd)) return;
    SIZE size = {};
    const CClientDC device(this);
    const auto range = static_cast<LONG>(SendMessageA(m_hWnd, LB_GETHORIZONTALEXTENT, 0, 0));
    GetTextExtentPoint32A(device.m_hDC, text, static_cast<int>(std::strlen(text)), &size);
    if (size.cx > range)
        SendMessageA(m_hWnd, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(size.cx), 0);
}

BEGIN_MESSAGE_MAP(RVListBox, CListBox)
END_MESSAGE_MAP()
