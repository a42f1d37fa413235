// The texts that rows are sorted by.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "../platform/mfc/Allocation.h"
#include "../platform/mfc/CString.h"

namespace rv {

// The text of each row by the row's item data, for the length of one sort. What needs memory throws
// CMemoryException*.
class SortTexts {
public:
    // `folded`: texts are kept as the order without case wants them, else as they are.
    explicit SortTexts(bool folded) noexcept : m_Folded(folded) {}

    void Reserve(std::size_t count) { m_Entries.reserve(count); }
    // Takes a copy of the text, which is folded as well.
    void Add(LPARAM data, CString& text);
    // Ends the adding. Of rows with the same item data the last one counts.
    void Finish();

    // The number of a text; below 0 for item data that are not there. Numbers of folded texts order
    // as CString::CompareNoCase orders the texts. After Finish.
    int Find(LPARAM data) const noexcept {
        const std::size_t place = Place_Of(data);
        return place < m_Numbers.size() ? m_Numbers[place] : kFree;
    }
    // The text with that number, unless texts are folded.
    CString Text_Of(int number) const;

private:
    template <class T>
    using Vector = std::vector<T, HeapAllocator<T>>;

    struct Entry {
        LPARAM data;
        std::size_t offset;
        int length;
    };

    // What tells most texts from each other, beside what it is of.
    struct Key {
        std::uint64_t lead;
        std::size_t row;
    };

    static constexpr int kFree = -1;

    Vector<int> Numbers_By_Row() const;
    std::size_t Common_Length() const noexcept;
    Vector<Key> Sorted_Keys(std::size_t common) const;
    std::string_view Rest_Of(std::size_t row, std::size_t common) const noexcept;
    std::size_t Set_Scale() noexcept;
    std::size_t Hashed_Place_Of(LPARAM data) const noexcept;
    // Beyond the places for what has none.
    std::size_t Place_Of(LPARAM data) const noexcept {
        if (m_Hash_Bits != 0) return Hashed_Place_Of(data);
        return std::rotr(static_cast<std::uint64_t>(data) - m_Least, m_Unit_Bits);
    }

    const bool m_Folded;
    Vector<char> m_Bytes;
    Vector<Entry> m_Entries;  // by row
    Vector<int> m_Numbers;    // by place
    Vector<LPARAM> m_Data;    // by place, where places are found by a hash

    // Item data are mostly numbers close together, or addresses, and then multiples of something:
    // the place is the distance to the least of them in units of that. Else a hash finds it.
    std::uint64_t m_Least = 0;
    int m_Unit_Bits = 0;
    int m_Hash_Bits = 0;  // of the number of places; 0 without a hash
};

}  // namespace rv
