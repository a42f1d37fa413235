// What the library requires of the sibling library zorLtUtils10: facts about an application.
#pragma once

#include "../platform/winapi.h"
#include "RVString.h"
#include "export.h"

// A record that is copied field by field, the fixed text with the bytes behind its end. A copy that
// lacks memory throws CMemoryException*, and nothing is copied.
//
// zorLtUtils10 holds the class; its copies are made by this library.
class ZORLTUTILS_API RVAppInfo {
public:
    RVAppInfo() = default;
    RVUTILS_API RVAppInfo(const RVAppInfo& other);
    RVUTILS_API RVAppInfo& operator=(const RVAppInfo& other);
    virtual ~RVAppInfo();

    // The application's facts, whose meaning is zorLtUtils10's affair.
    RVString m_Text;
    char m_Fixed_Text[129] = {};
    ULONG m_Number = 0;
};
