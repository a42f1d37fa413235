// The label.
#pragma once

#include "CWnd.h"

class RVPLATFORM_API CStatic : public CWnd {
public:
    // Makes the control as a child of `parent`, which is not null; WS_CHILD is added to `style`.
    // FALSE on failure, as CreateEx.
    virtual BOOL Create(const char* text, DWORD style, const RECT& place, CWnd* parent,
                        UINT id = 0xFFFF);
};
