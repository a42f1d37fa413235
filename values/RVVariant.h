// The suite's VARIANT, with strictly typed reads.
#pragma once

#include <concepts>

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/mfc/CComVariant.h"
#include "../platform/winapi.h"

// A VARIANT made from a plain type, which gives its value to that type alone.
//
// - Nothing is ever coerced. `int` is a truth value and shares VT_BOOL with `bool`: 5 reads back as
//   1. A number of 32 bits is a `long` or `unsigned long`; where these are wider, the variant holds
//   the low 32 bits. Platforms differ in which of `int` and `long` the type LONG is, so spell
//   `long` at this interface.
// - The variant owns its text, its array and one reference on its interface. Copies and assignment
//   are those of the base class: deep, and throwing.
// - A constructor that needs memory which is not there throws CMemoryException*.
// - Get_Value gives S_OK, or E_FAIL with the output as it was, and reports nothing.
// - A variant belongs to one thread at a time.
class RVUTILS_API RVVariant : public ATL::CComVariant {
public:
    RVVariant() noexcept = default;
    // A copy of any variant.
    RVVariant(const VARIANT& source) : CComVariant(source) {}
    RVVariant(const ATL::CComVariant& source) : CComVariant(source) {}
    RVVariant(const RVVariant& source) = default;
    virtual ~RVVariant() = default;

    RVVariant& operator=(const RVVariant& source) = default;

    // A number under its own type.
    RVVariant(char value) noexcept { Put(VT_I1, cVal, value); }
    RVVariant(unsigned char value) noexcept { Put(VT_UI1, bVal, value); }
    // It would be taken for an `int`.
    RVVariant(signed char value) = delete;
    // The same, but that an `int` is a truth value.
    RVVariant(short value) noexcept { Put(VT_I2, iVal, value); }
    RVVariant(unsigned short value) noexcept { Put(VT_UI2, uiVal, value); }
    RVVariant(int truth) noexcept { Put_Truth(truth != 0); }
    RVVariant(long value) noexcept { Put(VT_I4, lVal, value); }
    RVVariant(unsigned long value) noexcept { Put(VT_UI4, ulVal, value); }
    RVVariant(float value) noexcept { Put(VT_R4, fltVal, value); }
    RVVariant(double value) noexcept { Put(VT_R8, dblVal, value); }
    // A `bool` and nothing else: every pointer would become one.
    template <std::same_as<bool> Bool>
    RVVariant(Bool truth) noexcept {
        Put_Truth(truth);
    }

    // VT_BSTR with a copy up to the terminator. Null gives a null BSTR.
    RVVariant(const wchar_t* text);
    // The same with the text made wide, by the encoding of the thread's locale; that of an RVString
    // by its counted length.
    RVVariant(const char* text);
    RVVariant(const RVString& text);

    // Take a reference of their own; null is kept.
    RVVariant(IDispatch* object) {
        Put(VT_DISPATCH, pdispVal, object);
        if (object) object->AddRef();
    }
    RVVariant(IUnknown* object) {
        Put(VT_UNKNOWN, punkVal, object);
        if (object) object->AddRef();
    }

    // Give the number where the variant has that very type.
    [[nodiscard]] HRESULT Get_Value(char& value) const noexcept { return Read(VT_I1, cVal, value); }
    [[nodiscard]] HRESULT Get_Value(unsigned char& value) const noexcept {
        return Read(VT_UI1, bVal, value);
    }
    [[nodiscard]] HRESULT Get_Value(short& value) const noexcept {
        return Read(VT_I2, iVal, value);
    }
    [[nodiscard]] HRESULT Get_Value(unsigned short& value) const noexcept {
        return Read(VT_UI2, uiVal, value);
    }
    [[nodiscard]] HRESULT Get_Value(long& value) const noexcept { return Read(VT_I4, lVal, value); }
    [[nodiscard]] HRESULT Get_Value(unsigned long& value) const noexcept {
        return Read(VT_UI4, ulVal, value);
    }
    [[nodiscard]] HRESULT Get_Value(float& value) const noexcept {
        return Read(VT_R4, fltVal, value);
    }
    [[nodiscard]] HRESULT Get_Value(double& value) const noexcept {
        return Read(VT_R8, dblVal, value);
    }
    // Gives 1 and true for VARIANT_TRUE, else 0 and false, also for other values from outside.
    [[nodiscard]] HRESULT Get_Value(int& truth) const noexcept { return Read_Truth(truth); }
    [[nodiscard]] HRESULT Get_Value(bool& truth) const noexcept { return Read_Truth(truth); }

    // Gives the variant's own BSTR, which may be null. It ends with the variant's value, and the
    // caller does not free it.
    [[nodiscard]] HRESULT Get_Value(wchar_t*& text) const noexcept {
        return Read(VT_BSTR, bstrVal, text);
    }
    // Gives the text up to its terminator, made narrow by the encoding of the thread's locale.
    // Throws CMemoryException* when there is no memory for it.
    [[nodiscard]] HRESULT Get_Value(RVString& text) const { return Read(VT_BSTR, bstrVal, text); }

    // Give a reference, which the caller has to Release. A null pointer is none: E_FAIL.
    [[nodiscard]] HRESULT Get_Value(IDispatch*& object) const {
        return Read_Interface(VT_DISPATCH, pdispVal, object);
    }
    [[nodiscard]] HRESULT Get_Value(IUnknown*& object) const {
        return Read_Interface(VT_UNKNOWN, punkVal, object);
    }

    // Copy the first `count` elements, of 16 and of 32 bits, out of any array. Neither its element
    // type nor its size is looked at: it is the caller's duty that the array has so many bytes and
    // the target so many elements. The array is not locked. E_FAIL for what is no array.
    [[nodiscard]] HRESULT Get_Value(short* target, unsigned long count) const noexcept;
    [[nodiscard]] HRESULT Get_Value(unsigned long* target, unsigned long count) const noexcept;

private:
    template <class Held, class Value>
    void Put(VARTYPE tag, Held& held, Value value) noexcept {
        vt = tag;
        held = static_cast<Held>(value);
    }
    void Put_Truth(bool truth) noexcept {
        Put(VT_BOOL, boolVal, truth ? VARIANT_TRUE : VARIANT_FALSE);
    }
    // Takes the text over. Null where one was made is an exhausted heap.
    void Put_Text(BSTR text, bool made);

    template <class Held, class Value>
    HRESULT Read(VARTYPE tag, const Held& held, Value& value) const {
        if (vt != tag) return E_FAIL;
        value = held;
        return S_OK;
    }
    template <class Value>
    HRESULT Read_Truth(Value& value) const noexcept {
        if (vt != VT_BOOL) return E_FAIL;
        value = boolVal == VARIANT_TRUE;
        return S_OK;
    }
    template <class Interface>
    HRESULT Read_Interface(VARTYPE tag, Interface* const& held, Interface*& object) const {
        if (vt != tag || !held) return E_FAIL;
        held->AddRef();
        object = held;
        return S_OK;
    }
};
