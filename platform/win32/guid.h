// Globally unique identifiers.
#pragma once

#include "../export.h"
#include "types.h"

struct GUID {
    ULONG Data1;
    USHORT Data2;
    USHORT Data3;
    BYTE Data4[8];
};

using REFGUID = const GUID&;

// Whether all 16 bytes are equal.
[[nodiscard]] RVPLATFORM_API BOOL IsEqualGUID(REFGUID left, REFGUID right) noexcept;

// Writes the text of a GUID, such as {00000000-0000-0000-C000-000000000046}: upper-case digits, 38
// characters and a terminator. 39, or 0 where `size` characters are too few; nothing is written
// then. Allocates nothing. Any thread.
RVPLATFORM_API int StringFromGUID2(REFGUID guid, LPWSTR text, int size) noexcept;
