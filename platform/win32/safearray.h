// Arrays of OLE Automation, of one dimension.
//
// An array owns its elements: texts, variants, or one reference on each interface. One array
// belongs to one thread at a time.
#pragma once

#include "../export.h"
#include "types.h"
#include "variant.h"

struct SAFEARRAYBOUND {
    ULONG cElements;
    LONG lLbound;  // index of the first element
};

struct SAFEARRAY {
    USHORT cDims;      // 1
    USHORT fFeatures;  // FADF_..., what the elements are; 0: plain numbers
    ULONG cbElements;  // bytes of an element
    ULONG cLocks;      // while it is not 0, somebody uses the elements
    PVOID pvData;      // the elements
    SAFEARRAYBOUND rgsabound[1];
};

inline constexpr USHORT FADF_BSTR = 0x100;
inline constexpr USHORT FADF_UNKNOWN = 0x200;
inline constexpr USHORT FADF_DISPATCH = 0x400;
inline constexpr USHORT FADF_VARIANT = 0x800;

inline constexpr HRESULT DISP_E_ARRAYISLOCKED = static_cast<HRESULT>(0x8002000D);

// A new array of `count` elements, all zero, released by the caller with SafeArrayDestroy. Null
// for a type that no element has, and without memory.
[[nodiscard]] RVPLATFORM_API SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lower_bound,
                                                              ULONG count) noexcept;

// Releases the array and what it owns; null is no array. DISP_E_ARRAYISLOCKED leaves it as it was.
RVPLATFORM_API HRESULT SafeArrayDestroy(SAFEARRAY* array) noexcept;

// Gives a new array with copies of the elements; null for null. E_INVALIDARG for an array of
// several dimensions, E_OUTOFMEMORY, or the status of VariantCopy for an element: the copy is then
// null.
[[nodiscard]] RVPLATFORM_API HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy) noexcept;
