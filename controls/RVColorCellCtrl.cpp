#include "RVColorCellCtrl.h"

#include "../platform/mfc/CDC.h"

RVColorCellCtrl::RVColorCellCtrl() = default;

RVColorCellCtrl::RVColorCellCtrl(COLORREF color) : m_Color(color) {}

RVColorCellCtrl::~RVColorCellCtrl() = default;

COLORREF RVColorCellCtrl::Get_Color() const {
    return m_Color;
}

void RVColorCellCtrl::Set_Color(COLORREF color) {
    m_Color = color;
    if (::IsWindow(m_hWnd) && ::IsWindowVisible(m_hWnd) && ::IsWindowEnabled(m_hWnd))
        ::InvalidateRect(m_hWnd, nullptr, TRUE);
}

void RVColorCellCtrl::DrawItem(DRAWITEMSTRUCT*) {}

void RVColorCellCtrl::OnPaint() {
    CPaintDC device(this);
    RECT place;
    if (!::GetClientRect(m_hWnd, &place)) return;
    device.FillSolidRect(&place, m_Color);
    device.DrawEdge(&place, EDGE_ETCHED, BF_RECT);
}

// The button's own answer would draw a button.
void RVColorCellCtrl::OnKillFocus(CWnd*) {}

BEGIN_MESSAGE_MAP(RVColorCellCtrl, CButton)
ON_WM_PAINT()
ON_WM_KILLFOCUS()
END_MESSAGE_MAP()
