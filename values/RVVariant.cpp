// Texts and arrays of the suite's VARIANT.
#include "RVVariant.h"

#include <cstddef>
#include <cstring>

namespace {

// A new text, null without memory. `length` counts the terminator; -1: up to it.
BSTR Make_Wide(const char* text, int length) noexcept {
    const int wide = MultiByteToWideChar(CP_THREAD_ACP, 0, text, length, nullptr, 0);
    if (wide <= 0) return nullptr;  // longer than any BSTR
    // A BSTR has room for a terminator that it does not count.
    BSTR const made = SysAllocStringLen(nullptr, static_cast<UINT>(wide - 1));
    if (made) MultiByteToWideChar(CP_THREAD_ACP, 0, text, length, made, wide);
    return made;
}

// The elements may be of any type and lie at any address.
template <class Element, class Value>
HRESULT Copy_Elements(const VARIANT& variant, Value* target, std::size_t count) noexcept {
    if ((variant.vt & VT_ARRAY) == 0) return E_FAIL;
    if (count == 0) return S_OK;  // of a null array, too
    const bool by_reference = (variant.vt & VT_BYREF) != 0;
    const SAFEARRAY& array = by_reference ? **variant.pparray : *variant.parray;
    const auto* const data = static_cast<const std::byte*>(array.pvData);
    for (std::size_t i = 0; i < count; ++i) {
        Element element;
        std::memcpy(&element, data + i * sizeof element, sizeof element);
        target[i] = element;
    }
    return S_OK;
}

}  // namespace

RVVariant::RVVariant(const wchar_t* text) {
    Put_Text(SysAllocString(text), text != nullptr);
}

RVVariant::RVVariant(const char* text) {
    Put_Text(text ? Make_Wide(text, -1) : nullptr, text != nullptr);
}

RVVariant::RVVariant(const RVString& text) {
    Put_Text(Make_Wide(text, text.GetLength() + 1), true);
}

void RVVariant::Put_Text(BSTR text, bool made) {
    if (made && !text) Fail(E_OUTOFMEMORY);
    Put(VT_BSTR, bstrVal, text);
}

HRESULT RVVariant::Get_Value(short* target, unsigned long count) const noexcept {
    return Copy_Elements<SHORT>(*this, target, count);
}

HRESULT RVVariant::Get_Value(unsigned long* target, unsigned long count) const noexcept {
    return Copy_Elements<ULONG>(*this, target, count);
}
