// Rows of small values, in the memory of the house.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

#include "../heap.h"

namespace rv {

// Nothing here throws: what needs memory and gets none gives false, and the row is as it was.
// Values are moved as bytes and are nobody's to end: what they point to is the owner's affair.
template <class Value>
requires std::is_trivially_copyable_v<Value>
class GrowingArray {
public:
    GrowingArray() = default;
    GrowingArray(GrowingArray&& other) noexcept { Swap(other); }
    GrowingArray(const GrowingArray&) = delete;
    GrowingArray& operator=(const GrowingArray&) = delete;
    ~GrowingArray() { Heap_Free(m_Values); }

    [[nodiscard]] std::size_t Size() const noexcept { return m_Size; }
    [[nodiscard]] bool Is_Empty() const noexcept { return m_Size == 0; }
    Value& operator[](std::size_t index) const noexcept { return m_Values[index]; }
    Value* begin() const noexcept { return m_Values; }
    Value* end() const noexcept { return m_Values + m_Size; }

    [[nodiscard]] bool Insert(std::size_t index, const Value& value) noexcept {
        if (m_Size == m_Room && !Reserve(std::max<std::size_t>(8, m_Room * 2))) return false;
        std::memmove(static_cast<void*>(m_Values + index + 1), m_Values + index,
                     (m_Size - index) * sizeof(Value));
        m_Values[index] = value;
        ++m_Size;
        return true;
    }

    void Erase(std::size_t index) noexcept {
        --m_Size;
        std::memmove(static_cast<void*>(m_Values + index), m_Values + index + 1,
                     (m_Size - index) * sizeof(Value));
    }

    // The new ones are zeros.
    [[nodiscard]] bool Resize(std::size_t size) noexcept {
        if (size > m_Room && !Reserve(std::max(size, m_Room * 2))) return false;
        if (size > m_Size)
            std::memset(static_cast<void*>(m_Values + m_Size), 0, (size - m_Size) * sizeof(Value));
        m_Size = size;
        return true;
    }

    // Gives the memory back, too.
    void Clear() noexcept { GrowingArray().Swap(*this); }

    void Swap(GrowingArray& other) noexcept {
        std::swap(m_Values, other.m_Values);
        std::swap(m_Size, other.m_Size);
        std::swap(m_Room, other.m_Room);
    }

private:
    bool Reserve(std::size_t room) noexcept {
        void* const block = Heap_Reallocate(m_Values, room * sizeof(Value));
        if (!block) return false;
        m_Values = static_cast<Value*>(block);
        m_Room = room;
        return true;
    }

    Value* m_Values = nullptr;
    std::size_t m_Size = 0;
    std::size_t m_Room = 0;
};

}  // namespace rv
