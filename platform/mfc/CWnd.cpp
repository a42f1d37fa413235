#include "CWnd.h"

#include <utility>

CWnd::CWnd() noexcept : m_hWnd(nullptr) {}

CWnd::~CWnd() {
    CWnd::DestroyWindow();
}

BOOL CWnd::CreateEx(DWORD extended_style, const char* class_name, const char* text, DWORD style,
                    const RECT& place, CWnd* parent, UINT id) {
    if (::IsWindow(m_hWnd)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    // A child has its id in the place of a menu.
    m_hWnd = CreateWindowExA(
        extended_style, class_name, text, style, place.left, place.top, place.right - place.left,
        place.bottom - place.top, parent ? parent->m_hWnd : nullptr,
        reinterpret_cast<HMENU>(UINT_PTR{id}), GetModuleHandleA(nullptr), nullptr);
    return m_hWnd != nullptr;
}

BOOL CWnd::DestroyWindow() {
    return m_hWnd && ::DestroyWindow(std::exchange(m_hWnd, nullptr));
}
