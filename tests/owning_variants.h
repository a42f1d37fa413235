// Variants that own something, and an object that counts who takes it and who gives it back.
#pragma once

#include <RVUtils/winapi.h>

#include <initializer_list>

namespace rv_test {

class CountedObject final : public IDispatch {
public:
    HRESULT QueryInterface(REFIID, void**) override { return E_FAIL; }
    ULONG AddRef() override {
        ++m_Taken;
        return static_cast<ULONG>(Held());
    }
    ULONG Release() override {
        ++m_Given_Back;
        return static_cast<ULONG>(Held());
    }
    HRESULT GetTypeInfoCount(UINT*) override { return E_FAIL; }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_FAIL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_FAIL; }
    HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_FAIL;
    }

    int Taken() const { return m_Taken; }
    int Held() const { return m_Taken - m_Given_Back; }

private:
    int m_Taken = 0;
    int m_Given_Back = 0;
};

// An array that owns `elements`.
template <class Element>
VARIANT Array_Of(VARTYPE type, std::initializer_list<Element> elements) {
    VARIANT array;
    VariantInit(&array);
    array.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    array.parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(elements.size()));
    auto* at = static_cast<Element*>(array.parray->pvData);
    for (const Element& element : elements)
        *at++ = element;
    return array;
}

// An array of variants: a text with a NUL inside and half a character at its end, and arrays with
// texts and with two references on `object`, some of their elements null.
inline VARIANT Nested_Array(CountedObject& object) {
    VARIANT text;
    VariantInit(&text);
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocStringByteLen("odd\0odd", 7);
    object.AddRef();
    object.AddRef();
    return Array_Of<VARIANT>(VT_VARIANT,
                             {text, Array_Of<BSTR>(VT_BSTR, {SysAllocString(L"inner"), nullptr}),
                              Array_Of<IUnknown*>(VT_UNKNOWN, {&object, nullptr}),
                              Array_Of<IDispatch*>(VT_DISPATCH, {nullptr, &object})});
}

}  // namespace rv_test
