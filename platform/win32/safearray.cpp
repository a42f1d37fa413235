// Making, copying and releasing arrays.
#include "safearray.h"

#include <cstring>
#include <new>

#include "../heap.h"

namespace {

struct Element {
    ULONG bytes;  // 0: no array has such elements
    USHORT features = 0;
};

constexpr Element Element_Of(VARTYPE type) noexcept {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return {1};
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return {2};
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
        case VT_ERROR:
            return {4};
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return {8};
        case VT_DECIMAL:
            return {16};
        case VT_BSTR:
            return {sizeof(BSTR), FADF_BSTR};
        case VT_UNKNOWN:
            return {sizeof(IUnknown*), FADF_UNKNOWN};
        case VT_DISPATCH:
            return {sizeof(IDispatch*), FADF_DISPATCH};
        case VT_VARIANT:
            return {sizeof(VARIANT), FADF_VARIANT};
        default:
            return {0};
    }
}

// The elements are zero: numbers, null pointers, empty variants.
SAFEARRAY* Make_Array(Element element, SAFEARRAYBOUND bound) noexcept {
    const std::size_t bytes = std::size_t(element.bytes) * bound.cElements;
    void* const block = rv::Heap_Allocate(sizeof(SAFEARRAY));
    if (!block) return nullptr;
    void* const data = rv::Heap_Allocate(bytes);
    if (!data) {
        rv::Heap_Free(block);
        return nullptr;
    }
    std::memset(data, 0, bytes);
    return new (block) SAFEARRAY{1, element.features, element.bytes, 0, data, {bound}};
}

// The elements of an array of variants, or, where each is a pointer to what it owns, the tag of a
// variant that owns such a thing; neither of them for numbers.
VARIANT* Variants_Of(const SAFEARRAY& array) noexcept {
    return (array.fFeatures & FADF_VARIANT) != 0 ? static_cast<VARIANT*>(array.pvData) : nullptr;
}
VARTYPE Owner_Of_Pointers(const SAFEARRAY& array) noexcept {
    if ((array.fFeatures & FADF_BSTR) != 0) return VT_BSTR;
    if ((array.fFeatures & FADF_UNKNOWN) != 0) return VT_UNKNOWN;
    return (array.fFeatures & FADF_DISPATCH) != 0 ? VT_DISPATCH : VT_EMPTY;
}

VARIANT Owner_Of(VARTYPE tag, void* pointer) noexcept {
    VARIANT owner;
    VariantInit(&owner);
    owner.vt = tag;
    owner.byref = pointer;
    return owner;
}

void Release_Elements(const SAFEARRAY& array) noexcept {
    VARIANT* const variants = Variants_Of(array);
    auto* const pointers = static_cast<void**>(array.pvData);
    const VARTYPE tag = Owner_Of_Pointers(array);
    if (!variants && tag == VT_EMPTY) return;
    for (std::size_t i = 0; i < array.rgsabound[0].cElements; ++i) {
        VARIANT owner = variants ? variants[i] : Owner_Of(tag, pointers[i]);
        VariantClear(&owner);
    }
}

HRESULT Copy_Element(VARTYPE tag, void* from, void*& to) noexcept {
    const VARIANT source = Owner_Of(tag, from);
    VARIANT copy = Owner_Of(VT_EMPTY, nullptr);
    const HRESULT status = VariantCopy(&copy, &source);
    if (status == S_OK) to = copy.byref;
    return status;
}

HRESULT Copy_Elements(const SAFEARRAY& from, const SAFEARRAY& to) noexcept {
    const std::size_t count = from.rgsabound[0].cElements;
    VARIANT* const variants = Variants_Of(from);
    const VARTYPE tag = Owner_Of_Pointers(from);
    if (!variants && tag == VT_EMPTY) {
        std::memcpy(to.pvData, from.pvData, count * from.cbElements);
        return S_OK;
    }
    HRESULT status = S_OK;
    for (std::size_t i = 0; i < count && status == S_OK; ++i)
        status = variants ? VariantCopy(Variants_Of(to) + i, variants + i)
                          : Copy_Element(tag, static_cast<void**>(from.pvData)[i],
                                         static_cast<void**>(to.pvData)[i]);
    return status;
}

}  // namespace

SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lower_bound, ULONG count) noexcept {
    const Element element = Element_Of(type);
    return element.bytes == 0 ? nullptr : Make_Array(element, {count, lower_bound});
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) noexcept {
    if (!array) return S_OK;
    if (array->cLocks != 0) return DISP_E_ARRAYISLOCKED;
    Release_Elements(*array);
    rv::Heap_Free(array->pvData);
    rv::Heap_Free(array);
    return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy) noexcept {
    *copy = nullptr;
    if (!array) return S_OK;
    if (array->cDims != 1) return E_INVALIDARG;
    SAFEARRAY* const made = Make_Array({array->cbElements, array->fFeatures}, array->rgsabound[0]);
    if (!made) return E_OUTOFMEMORY;
    const HRESULT status = Copy_Elements(*array, *made);
    if (status == S_OK)
        *copy = made;
    else
        SafeArrayDestroy(made);
    return status;
}
