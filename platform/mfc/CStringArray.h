// The class library's array of strings.
#pragma once

#include <vector>

#include "../export.h"
#include "../winapi.h"
#include "Allocation.h"
#include "CString.h"

// Texts by index, from 0. An index is one of an element that is there.
//
// An operation that cannot have memory throws CMemoryException*; the array is then as it was. An
// array may be read by several threads at once.
class RVPLATFORM_API CStringArray {
public:
    CStringArray() noexcept;
    CStringArray(const CStringArray&) = delete;
    CStringArray& operator=(const CStringArray&) = delete;
    ~CStringArray();

    INT_PTR GetSize() const noexcept;
    INT_PTR GetCount() const noexcept { return GetSize(); }

    const CString& GetAt(INT_PTR index) const noexcept;
    const CString& operator[](INT_PTR index) const noexcept { return GetAt(index); }
    // Until the size changes.
    CString& operator[](INT_PTR index) noexcept;
    void SetAt(INT_PTR index, CString text) noexcept;

    // Appends, and gives the index of the new element.
    INT_PTR Add(CString text);
    // New elements are empty; those behind the new end go. A size below 0 counts as 0. `grow_by`
    // has no meaning: a row of appends costs time in proportion to its length, by whatever steps.
    void SetSize(INT_PTR size, INT_PTR grow_by = -1);
    // Gives the memory back, too.
    void RemoveAll() noexcept;

private:
    std::vector<CString, rv::HeapAllocator<CString>> m_Texts;
};
