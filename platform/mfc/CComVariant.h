// An owner of one VARIANT.
#pragma once

#include "../export.h"
#include "../winapi.h"

namespace ATL {

// Copies are deep: texts and arrays are copied, an interface gets one more reference. What the
// variant owns is released by the destructor and before another value takes its place.
//
// A copy that fails leaves the tag VT_ERROR with the status as `scode`, and throws
// CMemoryException* for E_OUTOFMEMORY, else CAtlException, by value, with the status.
class RVPLATFORM_API CComVariant : public tagVARIANT {
public:
    CComVariant() noexcept { vt = VT_EMPTY; }
    CComVariant(const VARIANT& source) : CComVariant() { Replace(source); }
    CComVariant(const CComVariant& source) : CComVariant() { Replace(source); }
    ~CComVariant() {
        if (!Is_Plain()) VariantClear(this);
    }

    CComVariant& operator=(const VARIANT& source) {
        if (this != &source) Replace(source);
        return *this;
    }
    CComVariant& operator=(const CComVariant& source) {
        return *this = static_cast<const VARIANT&>(source);
    }

protected:
    // Ends an operation that failed, as told above. What the variant owned must be released.
    [[noreturn]] void Fail(HRESULT status);

private:
    // Saves a call for each number that comes and goes. Tags that are none are no plain ones.
    bool Is_Plain() const noexcept {
        constexpr unsigned int kOwners = 1u << VT_BSTR | 1u << VT_DISPATCH | 1u << VT_UNKNOWN;
        return vt <= VT_UINT && (kOwners >> vt & 1) == 0;
    }
    void Replace(const VARIANT& source);
};

}  // namespace ATL
