#include "CBitmap.h"

#include <utility>

CGdiObject::~CGdiObject() {
    DeleteObject();
}

BOOL CGdiObject::Attach(HGDIOBJ object) noexcept {
    if (!object || m_hObject) return FALSE;
    m_hObject = object;
    return TRUE;
}

HGDIOBJ CGdiObject::Detach() noexcept {
    return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject() noexcept {
    HGDIOBJ const object = Detach();
    return object && ::DeleteObject(object);
}

CBitmap::~CBitmap() = default;
