// What the library requires of the sibling library RVDev: values of the registry.
#pragma once

#include "../platform/mfc/CComVariant.h"
#include "../platform/winapi.h"
#include "RVString.h"
#include "export.h"

// Reads the values of one key. The key is looked for at each reading, so nothing is open between
// them, and a copy reads the same key.
//
// A record that is copied field by field, in this order. A value that cannot be copied leaves a
// variant of type VT_ERROR with the status, and throws as ATL::CComVariant does; an assignment has
// copied the other fields by then. The value of a record that is assigned to itself is not touched.
//
// RVDev holds the class; its copies are made by the library RVUtils.
class RVDEV_API RVRegTool {
public:
    // `root`: one of the roots, or an open key that outlives the tool and its copies. `key`: the
    // path below it; whether it is there is not looked at.
    RVRegTool(const HKEY& root, const RVString& key);
    RVUTILS_API RVRegTool(const RVRegTool& other);
    RVUTILS_API RVRegTool& operator=(const RVRegTool& other);
    virtual ~RVRegTool();

    // Fills `text` from the value `name` of the subkey `section`, or of the key itself when that is
    // empty: a text up to its first NUL, environment variables in it as they are written, or the
    // digits of a number of 32 bits. False, with `text` as it was, for a value of another type or
    // one that is missing or cannot be read. `kind`: 1, the only one there is. Throws
    // CMemoryException* when there is no memory.
    bool Get_Value(const RVString& name, const RVString& section, RVString& text, ULONG kind);

    RVString m_Text;              // the key's path
    char m_Fixed_Text[129] = {};  // the name that was read last, cut to fit
    ULONG m_First = 0;            // the lower and
    ULONG m_Second = 0;           // the upper half of the root
    ULONG m_Third = 0;            // what the last reading gave, ERROR_SUCCESS or why it failed
    bool m_Flag = false;          // whether it found the value
    ATL::CComVariant m_Value;     // empty
};
