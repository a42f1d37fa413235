// An owner of one BSTR.
#pragma once

#include <utility>

#include "../winapi.h"
#include "CAtlException.h"

namespace ATL {

// Null is a text of no characters. The text is released by the destructor and before another takes
// its place. Copies are copies of the text, counted, so NUL characters inside are kept. What needs
// memory that is not there throws CAtlException, by value, with E_OUTOFMEMORY, and leaves the
// object as it was.
class CComBSTR {
public:
    CComBSTR() noexcept = default;
    // The text up to its terminator. Null stays null.
    CComBSTR(const OLECHAR* text) : m_str(SysAllocString(text)) { Check(text); }
    CComBSTR(const CComBSTR& other) : m_str(other.Copy()) {}
    CComBSTR(CComBSTR&& other) noexcept : m_str(other.Detach()) {}
    ~CComBSTR() { SysFreeString(m_str); }

    CComBSTR& operator=(const CComBSTR& other) {
        if (this != &other) Attach(other.Copy());
        return *this;
    }
    CComBSTR& operator=(CComBSTR&& other) noexcept {
        std::swap(m_str, other.m_str);
        return *this;
    }
    CComBSTR& operator=(const OLECHAR* text) { return *this = CComBSTR(text); }

    operator BSTR() const noexcept { return m_str; }
    unsigned int Length() const noexcept { return SysStringLen(m_str); }

    // Where an operation puts a new text; what the object held before is not released.
    BSTR* operator&() noexcept { return &m_str; }

    // Takes a text over, and releases the one before.
    void Attach(BSTR text) noexcept {
        if (m_str != text) SysFreeString(m_str);
        m_str = text;
    }
    // Gives the text to the caller, who has to release it.
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(m_str, nullptr); }
    // A new text, released by the caller; null for null.
    [[nodiscard]] BSTR Copy() const {
        if (!m_str) return nullptr;
        BSTR const copy = SysAllocStringLen(m_str, Length());
        if (!copy) AtlThrow(E_OUTOFMEMORY);
        return copy;
    }
    void Empty() noexcept { Attach(nullptr); }

    BSTR m_str = nullptr;

private:
    void Check(const OLECHAR* text) const {
        if (text && !m_str) AtlThrow(E_OUTOFMEMORY);
    }
};

}  // namespace ATL

using ATL::CComBSTR;
