// The class library's base of objects.
#pragma once

#include "../export.h"
#include "HeapObject.h"

// What an application may hold by a pointer to this base and end with delete. Derived classes
// decide themselves whether they can be copied.
class RVPLATFORM_API CObject : public rv::HeapObject {
public:
    virtual ~CObject();

protected:
    CObject() noexcept = default;
    CObject(const CObject&) noexcept = default;
    CObject& operator=(const CObject&) noexcept = default;
};
