#include "CStringArray.h"

#include <cassert>
#include <cstddef>
#include <type_traits>
#include <utility>

// Growing moves the texts, so it leaves the array as it was when it fails.
static_assert(std::is_nothrow_move_constructible_v<CString>);

CStringArray::CStringArray() noexcept = default;

CStringArray::~CStringArray() = default;

INT_PTR CStringArray::GetSize() const noexcept {
    return static_cast<INT_PTR>(m_Texts.size());
}

const CString& CStringArray::GetAt(INT_PTR index) const noexcept {
    assert(index >= 0 && index < GetSize());
    return m_Texts[static_cast<std::size_t>(index)];
}

CString& CStringArray::operator[](INT_PTR index) noexcept {
    assert(index >= 0 && index < GetSize());
    return m_Texts[static_cast<std::size_t>(index)];
}

void CStringArray::SetAt(INT_PTR index, CString text) noexcept {
    (*this)[index] = std::move(text);
}

INT_PTR CStringArray::Add(CString text) {
    m_Texts.push_back(std::move(text));
    return GetSize() - 1;
}

void CStringArray::SetSize(INT_PTR size, INT_PTR) {
    if (size <= 0) return RemoveAll();
    // The container would tell this by an exception of its own.
    if (static_cast<std::size_t>(size) > m_Texts.max_size()) AfxThrowMemoryException();
    m_Texts.resize(static_cast<std::size_t>(size));
}

void CStringArray::RemoveAll() noexcept {
    decltype(m_Texts)().swap(m_Texts);
}
