#include "CComVariant.h"

#include "CAtlException.h"
#include "HeapObject.h"

namespace ATL {

void CComVariant::Fail(HRESULT status) {
    vt = VT_ERROR;
    scode = status;
    if (status == E_OUTOFMEMORY) AfxThrowMemoryException();
    AtlThrow(status);
}

void CComVariant::Replace(const VARIANT& source) {
    // VariantCopy refuses some sources before it clears, and VT_ERROR must not cover an old value.
    HRESULT status = VariantClear(this);
    // Only some versions of the declaration promise what the function keeps.
    if (status == S_OK) status = VariantCopy(this, const_cast<VARIANT*>(&source));
    if (status != S_OK) Fail(status);
}

}  // namespace ATL
