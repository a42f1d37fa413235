// The button.
#pragma once

#include "CWnd.h"

class RVPLATFORM_API CButton : public CWnd {
public:
    // Makes the control as a child of `parent`, which is not null; WS_CHILD is added to `style`.
    // FALSE on failure, as CreateEx.
    virtual BOOL Create(const char* text, DWORD style, const RECT& place, CWnd* parent, UINT id);

    // Draws a button with the style BS_OWNERDRAW. This one draws nothing.
    virtual void DrawItem(DRAWITEMSTRUCT* item);

protected:
    BOOL OnChildNotify(UINT message, WPARAM first, LPARAM second, LRESULT* result) override;
};
