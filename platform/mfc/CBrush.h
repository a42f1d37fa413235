// The brush.
#pragma once

#include "CBitmap.h"

class RVPLATFORM_API CBrush : public CGdiObject {
public:
    ~CBrush() override;

    // FALSE on failure, and for an object that owns a brush, which it keeps.
    BOOL CreateSolidBrush(COLORREF color) noexcept;

    operator HBRUSH() const noexcept { return static_cast<HBRUSH>(m_hObject); }
};
