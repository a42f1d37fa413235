// What belongs to an id.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "../platform/mfc/Allocation.h"

namespace rv {

// A hash table from 32-bit ids to plain values. Every operation takes constant time, Reserve_One on
// the whole. At most two thirds of the slots are taken. A byte for each slot stands apart from the
// rest: what is not there is mostly told by these alone, which stay in the processor's caches.
template <class Value>
class IdTable {
public:
    // The value of an id, null for one that is not there. It stands there until an id is entered or
    // taken out.
    const Value* Find(ULONG id) const noexcept {
        if (m_Tags.empty()) return nullptr;
        const std::size_t place = Place_Of(id);
        return m_Tags[place] == kFree ? nullptr : &m_Slots[place].value;
    }
    Value* Find(ULONG id) noexcept { return const_cast<Value*>(std::as_const(*this).Find(id)); }

    // Calls `visit` with every value.
    template <class Visit>
    void For_Each(Visit visit) const {
        for (std::size_t place = 0; place < m_Tags.size(); ++place)
            if (m_Tags[place] != kFree) visit(m_Slots[place].value);
    }

    // Makes room for one more id. Throws CMemoryException*, and nothing has changed.
    void Reserve_One() {
        if (3 * (m_Count + 1) > 2 * m_Tags.size()) Grow();
    }

    // Sets the value of an id, which is new, after Reserve_One, or there already.
    void Set(ULONG id, const Value& value) noexcept {
        const std::size_t place = Place_Of(id);
        if (m_Tags[place] == kFree) ++m_Count;
        m_Tags[place] = Tag_Of(Hash_Of(id));
        m_Slots[place] = {id, value};
    }

    // Takes out an id that is there. Those behind it move up, so that no search ends early.
    void Erase(ULONG id) noexcept {
        std::size_t hole = Place_Of(id);
        for (std::size_t at = Next(hole); m_Tags[at] != kFree; at = Next(at)) {
            const std::size_t home = Home_Of(Hash_Of(m_Slots[at].id));
            if (Distance(home, at) < Distance(hole, at)) continue;
            m_Tags[hole] = m_Tags[at];
            m_Slots[hole] = m_Slots[at];
            hole = at;
        }
        m_Tags[hole] = kFree;
        --m_Count;
    }

    // Gives the memory back, too.
    void Clear() noexcept { *this = IdTable(); }

private:
    struct Slot {
        ULONG id = 0;
        Value value = {};
    };

    static constexpr std::size_t kFirstSize = 16;  // a power of two, as every size
    static constexpr std::uint8_t kFree = 0;

    // Neighbouring ids, the most common, are spread evenly by the golden ratio.
    static std::uint64_t Hash_Of(ULONG id) noexcept {
        return id * std::uint64_t{0x9E3779B97F4A7C15};
    }
    // The uppermost bits say where the search begins.
    std::size_t Home_Of(std::uint64_t hash) const noexcept {
        return static_cast<std::size_t>(hash >> (64 - std::countr_zero(m_Tags.size())));
    }
    // Others tell ids apart at a glance.
    static std::uint8_t Tag_Of(std::uint64_t hash) noexcept {
        return static_cast<std::uint8_t>(hash >> 24 | 0x80);
    }
    std::size_t Next(std::size_t place) const noexcept { return (place + 1) & (m_Tags.size() - 1); }
    std::size_t Distance(std::size_t from, std::size_t to) const noexcept {
        return (to - from) & (m_Tags.size() - 1);
    }

    // The slot of the id, or the free one where it would stand.
    std::size_t Place_Of(ULONG id) const noexcept {
        const std::uint64_t hash = Hash_Of(id);
        const std::uint8_t tag = Tag_Of(hash);
        std::size_t place = Home_Of(hash);
        while (m_Tags[place] != kFree && !(m_Tags[place] == tag && m_Slots[place].id == id))
            place = Next(place);
        return place;
    }

    void Grow() {
        IdTable larger;
        const std::size_t size = m_Tags.empty() ? kFirstSize : 2 * m_Tags.size();
        larger.m_Tags.resize(size, kFree);
        larger.m_Slots.resize(size);
        for (std::size_t place = 0; place < m_Tags.size(); ++place)
            if (m_Tags[place] != kFree) larger.Set(m_Slots[place].id, m_Slots[place].value);
        *this = std::move(larger);
    }

    std::vector<std::uint8_t, HeapAllocator<std::uint8_t>> m_Tags;
    std::vector<Slot, HeapAllocator<Slot>> m_Slots;  // as many
    std::size_t m_Count = 0;
};

// Where the entry of an id stands.
using IdIndex = IdTable<std::uint32_t>;

}  // namespace rv
