// The class library's owners of drawing objects.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "CObject.h"

// Owns a drawing object of the system, or none, and ends it when it ends itself.
class RVPLATFORM_API CGdiObject : public CObject {
public:
    CGdiObject() noexcept = default;
    CGdiObject(const CGdiObject&) = delete;
    CGdiObject& operator=(const CGdiObject&) = delete;
    ~CGdiObject() override;

    // Takes `object` over. FALSE for null, and when it owns one already; nothing changes then.
    BOOL Attach(HGDIOBJ object) noexcept;
    // Gives the object up to the caller; null when there is none.
    HGDIOBJ Detach() noexcept;
    // Ends the object. FALSE when there is none.
    BOOL DeleteObject() noexcept;
    HGDIOBJ GetSafeHandle() const noexcept { return m_hObject; }

    HGDIOBJ m_hObject = nullptr;
};

class RVPLATFORM_API CBitmap : public CGdiObject {
public:
    ~CBitmap() override;

    operator HBITMAP() const noexcept { return static_cast<HBITMAP>(m_hObject); }
};
