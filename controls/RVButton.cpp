#include "RVButton.h"

RVButton::~RVButton() = default;

void RVButton::Enable_Button(int enable) {
    if (!::IsWindow(m_hWnd)) return;
    ::EnableWindow(m_hWnd, enable);
    if (!enable) Set_Default_Button(0);
}

void RVButton::Enable_Button_And_Show(int enable) {
    if (!::IsWindow(m_hWnd)) return;
    ::ShowWindow(m_hWnd, enable ? SW_SHOW : SW_HIDE);
    Enable_Button(enable);
}

void RVButton::Set_Default_Button(int make_default) {
    if (!::IsWindow(m_hWnd)) return;
    DWORD style = LOWORD(static_cast<DWORD>(GetWindowLongA(m_hWnd, GWL_STYLE)));
    if (!make_default) style &= ~DWORD{BS_DEFPUSHBUTTON};
    SendMessageA(m_hWnd, BM_SETSTYLE, style, MAKELPARAM(TRUE, 0));
}

BEGIN_MESSAGE_MAP(RVButton, CButton)
END_MESSAGE_MAP()
