// Copying and clearing variants.
#include "variant.h"

#include "safearray.h"

namespace {

constexpr VARTYPE kFlags = VT_ARRAY | VT_BYREF;

// Whether the tag stands for something that a variant can hold.
constexpr bool Is_Valid(VARTYPE tag) noexcept {
    const VARTYPE type = tag & VT_TYPEMASK;
    if ((tag & ~(VT_TYPEMASK | kFlags)) != 0 || type > VT_UINT || type == 15) return false;
    return (tag & kFlags) == 0 || type > VT_NULL;
}

// Gives a variant that was copied bit by bit its own share of what the other one owns. A failure
// leaves it empty.
HRESULT Own(VARIANT& variant) noexcept {
    HRESULT status = S_OK;
    if ((variant.vt & VT_BYREF) != 0) return status;
    if ((variant.vt & VT_ARRAY) != 0) {
        status = SafeArrayCopy(variant.parray, &variant.parray);
    } else if (variant.vt == VT_BSTR && variant.bstrVal) {
        variant.bstrVal = SysAllocStringByteLen(reinterpret_cast<LPCSTR>(variant.bstrVal),
                                                SysStringByteLen(variant.bstrVal));
        if (!variant.bstrVal) status = E_OUTOFMEMORY;
    } else if (variant.vt == VT_DISPATCH && variant.pdispVal) {
        variant.pdispVal->AddRef();
    } else if (variant.vt == VT_UNKNOWN && variant.punkVal) {
        variant.punkVal->AddRef();
    }
    if (status != S_OK) variant.vt = VT_EMPTY;
    return status;
}

}  // namespace

HRESULT VariantClear(VARIANTARG* variant) noexcept {
    if (!Is_Valid(variant->vt)) return DISP_E_BADVARTYPE;
    const VARTYPE tag = variant->vt;
    if ((tag & VT_ARRAY) != 0 && (tag & VT_BYREF) == 0) {
        const HRESULT status = SafeArrayDestroy(variant->parray);
        if (status != S_OK) return status;
    }
    // Empty first: the end of an object may look at the variant that held it.
    variant->vt = VT_EMPTY;
    if (tag == VT_BSTR) SysFreeString(variant->bstrVal);
    if (tag == VT_DISPATCH && variant->pdispVal) variant->pdispVal->Release();
    if (tag == VT_UNKNOWN && variant->punkVal) variant->punkVal->Release();
    return S_OK;
}

HRESULT VariantCopy(VARIANTARG* target, const VARIANTARG* source) noexcept {
    if (target == source) return S_OK;
    if (!Is_Valid(source->vt)) return DISP_E_BADVARTYPE;
    const HRESULT status = VariantClear(target);
    if (status != S_OK) return status;
    *target = *source;
    return Own(*target);
}
