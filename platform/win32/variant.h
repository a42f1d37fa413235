// A value of OLE Automation with its type beside it.
//
// A variant owns what its tag says: a text, an array, or one reference on an interface. With the
// flag VT_BYREF it owns nothing and holds a pointer to what is somebody else's. One variant belongs
// to one thread at a time.
#pragma once

#include "../export.h"
#include "bstr.h"
#include "types.h"
#include "unknown.h"

struct SAFEARRAY;

using VARTYPE = USHORT;
using VARIANT_BOOL = SHORT;
using SCODE = LONG;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// Every type that a variant can hold here. Records are none.
enum VARENUM {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_TYPEMASK = 0xFFF
};

struct tagVARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        CHAR cVal;
        BYTE bVal;
        SHORT iVal;
        USHORT uiVal;
        LONG lVal;
        ULONG ulVal;
        float fltVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        SAFEARRAY** pparray;
        PVOID byref;
        PVOID widest[2];  // gives the published size
    };
};

using VARIANT = tagVARIANT;
using VARIANTARG = VARIANT;

static_assert(sizeof(VARIANT) == 8 + 2 * sizeof(PVOID));

inline constexpr HRESULT DISP_E_BADVARTYPE = static_cast<HRESULT>(0x80020008);

// Makes memory of any content an empty variant.
inline void VariantInit(VARIANTARG* variant) noexcept {
    variant->vt = VT_EMPTY;
}

// Releases what the variant owns and makes it empty. DISP_E_BADVARTYPE for a tag that is none, and
// the status of SafeArrayDestroy, leave it as it was.
RVPLATFORM_API HRESULT VariantClear(VARIANTARG* variant) noexcept;

// Clears the target and makes it a copy that owns its own text, array or reference. A source whose
// tag is none: DISP_E_BADVARTYPE, and the target is as it was, as it is where it cannot be cleared.
// A copy that cannot be made leaves it empty: E_OUTOFMEMORY, or the status of SafeArrayCopy. A
// variant copied to itself stays as it is.
[[nodiscard]] RVPLATFORM_API HRESULT VariantCopy(VARIANTARG* target,
                                                 const VARIANTARG* source) noexcept;
