// The texts that rows are sorted by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "../platform/mfc/Allocation.h"
#include "../platform/mfc/CString.h"

namespace rv {

// The text of each row by the row's item data, for the length of one sort. What needs memory throws
// CMemoryException*.
class SortTexts {
public:
    struct Entry {
        std::uint64_t lead;  // orders most texts, see Compare
        LPARAM data;
        std::size_t offset;
        int length;  // below 0: the place is free
    };

    // `folded`: texts are kept as Compare wants them, else as they are.
    explicit SortTexts(bool folded) noexcept : m_Folded(folded) {}

    void Reserve(std::size_t count) { m_Entries.reserve(count); }
    // Takes a copy of the text, which is folded as well.
    void Add(LPARAM data, CString& text);
    // Ends the adding. Of rows with the same item data the last one counts.
    void Finish();

    // Null for item data that are not there. After Finish.
    const Entry* Find(LPARAM data) const noexcept;
    CString Text_Of(const Entry& entry) const;
    // As CString::CompareNoCase; of folded texts, after Finish.
    int Compare(const Entry& left, const Entry& right) const noexcept;

private:
    template <class T>
    using Vector = std::vector<T, HeapAllocator<T>>;

    static constexpr Entry kFree = {0, 0, 0, -1};

    void Set_Leads() noexcept;
    std::size_t Set_Scale() noexcept;
    std::size_t Place_Of(LPARAM data) const noexcept;

    const bool m_Folded;
    Vector<char> m_Bytes;
    Vector<Entry> m_Entries;   // by row until Finish, then by place
    std::size_t m_Common = 0;  // how many bytes all texts begin with alike

    // Item data are mostly numbers close together, or addresses, and then multiples of something:
    // the place is the distance to the least of them in units of that. Else a hash finds it.
    std::uint64_t m_Least = 0;
    int m_Unit_Bits = 0;
    int m_Hash_Bits = 0;  // of the number of places; 0 without a hash
};

}  // namespace rv
