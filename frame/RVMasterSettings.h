// What the library requires of the sibling library RVDev: the settings that all others hang on.
#pragma once

#include "../platform/mfc/CComVariant.h"
#include "../platform/winapi.h"
#include "export.h"

// A record that is copied field by field, in this order. A value that cannot be copied leaves a
// variant of type VT_ERROR with the status, and throws as ATL::CComVariant does; an assignment has
// copied the other fields by then. The value of a record that is assigned to itself is not touched.
//
// Its copies, and Is_Open, are this library's.
class RVMasterSettings {
public:
    RVMasterSettings() = default;
    RVUTILS_API RVMasterSettings(const RVMasterSettings& other);
    RVUTILS_API RVMasterSettings& operator=(const RVMasterSettings& other);

    // Whether the settings are open: m_Open.
    RVUTILS_API bool Is_Open() const noexcept;

    // The fields, whose meaning is their owner's affair.
    ULONG m_First = 0;
    ULONG m_Second = 0;
    bool m_Open = false;
    ATL::CComVariant m_Value;
};
