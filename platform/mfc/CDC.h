// Drawing.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "CWnd.h"

// Draws on a device context, which somebody else ends. Without one, nothing happens.
class RVPLATFORM_API CDC : public CObject {
public:
    explicit CDC(HDC context = nullptr) noexcept : m_hDC(context) {}
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    ~CDC() override;

    HDC GetSafeHdc() const noexcept { return m_hDC; }

    // Both give the colour before; CLR_INVALID on failure.
    virtual COLORREF SetTextColor(COLORREF color) noexcept;
    virtual COLORREF SetBkColor(COLORREF color) noexcept;

    void FillSolidRect(const RECT* place, COLORREF color) noexcept;
    // Edge and flags as of ::DrawEdge, which may shrink `place`.
    BOOL DrawEdge(RECT* place, UINT edge, UINT flags) noexcept;

    HDC m_hDC;
};

// The inside of a window, for as long as one lives; of one that is not there, none.
class RVPLATFORM_API CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* window) noexcept;
    ~CClientDC() override;

private:
    HWND const m_hWnd;
};

// What has to be painted of a window, for the answer to WM_PAINT.
class RVPLATFORM_API CPaintDC : public CDC {
public:
    explicit CPaintDC(CWnd* window) noexcept;
    ~CPaintDC() override;

    PAINTSTRUCT m_ps = {};

private:
    HWND const m_hWnd;
};

namespace rv {

template <class Target, auto Operation>
BOOL Answer_Color_Question(CCmdTarget& target, WPARAM context, LPARAM kind, LRESULT& result) {
    CDC device(reinterpret_cast<HDC>(context));
    HBRUSH const brush =
        (static_cast<Target&>(target).*Operation)(&device, static_cast<UINT>(kind));
    result = reinterpret_cast<LRESULT>(brush);
    return brush != nullptr;
}

}  // namespace rv

// HBRUSH CtlColor(CDC* device, UINT kind), in the control itself: sets the colours of its text and
// gives the brush of its background, or null for those of the parent. `kind`: the number of its
// message behind WM_CTLCOLORMSGBOX.
#define ON_WM_CTLCOLOR_REFLECT()             \
    {WM_REFLECT_BASE + kColorQuestion, 0, 0, \
     &rv::Answer_Color_Question<ThisClass, &ThisClass::CtlColor>},
