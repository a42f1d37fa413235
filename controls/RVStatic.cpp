#include "RVStatic.h"

RVStatic::RVStatic() : m_Background_Color(GetSysColor(COLOR_BTNFACE)) {
    m_Background_Brush.CreateSolidBrush(m_Background_Color);
}

RVStatic::~RVStatic() = default;

void RVStatic::Set_Text_Color(COLORREF color) {
    m_Text_Color = color;
    Repaint();
}

void RVStatic::Set_Background_Color(COLORREF color) {
    m_Background_Color = color;
    m_Background_Brush.DeleteObject();
    m_Background_Brush.CreateSolidBrush(color);
    Repaint();
}

// Without a window, every window on the screen would be meant.
void RVStatic::Repaint() {
    if (m_hWnd) ::InvalidateRect(m_hWnd, nullptr, TRUE);
}

HBRUSH RVStatic::CtlColor(CDC* device, UINT) {
    device->SetTextColor(m_Text_Color);
    device->SetBkColor(m_Background_Color);
    return m_Background_Brush;
}

BEGIN_MESSAGE_MAP(RVStatic, CStatic)
ON_WM_CTLCOLOR_REFLECT()
END_MESSAGE_MAP()
