#include "CBrush.h"

CBrush::~CBrush() = default;

BOOL CBrush::CreateSolidBrush(COLORREF color) noexcept {
    return !m_hObject && Attach(::CreateSolidBrush(color));
}
