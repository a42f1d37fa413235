#include "CDC.h"

CDC::~CDC() = default;

COLORREF CDC::SetTextColor(COLORREF color) noexcept {
    return ::SetTextColor(m_hDC, color);
}

COLORREF CDC::SetBkColor(COLORREF color) noexcept {
    return ::SetBkColor(m_hDC, color);
}

void CDC::FillSolidRect(const RECT* place, COLORREF color) noexcept {
    const COLORREF before = ::SetBkColor(m_hDC, color);
    ::ExtTextOutA(m_hDC, 0, 0, ETO_OPAQUE, place, nullptr, 0, nullptr);
    ::SetBkColor(m_hDC, before);
}

BOOL CDC::DrawEdge(RECT* place, UINT edge, UINT flags) noexcept {
    return ::DrawEdge(m_hDC, place, edge, flags);
}

CClientDC::CClientDC(CWnd* window) noexcept
    : CDC(::IsWindow(window->m_hWnd) ? ::GetDC(window->m_hWnd) : nullptr), m_hWnd(window->m_hWnd) {}

CClientDC::~CClientDC() {
    if (m_hDC) ::ReleaseDC(m_hWnd, m_hDC);
}

CPaintDC::CPaintDC(CWnd* window) noexcept : m_hWnd(window->m_hWnd) {
    m_hDC = ::BeginPaint(m_hWnd, &m_ps);
}

CPaintDC::~CPaintDC() {
    if (m_hDC) ::EndPaint(m_hWnd, &m_ps);
}
