#include "DwordCrossRef.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

#include "../frame/RVDev.h"

namespace {

constexpr unsigned int kNoMemory = 23;

}  // namespace

// The referenced ids of one key, in one block that the header stands in front of.
struct RVDwordCrossRef::Links {
    // Blocks of 24, 48, 96 ... bytes.
    static constexpr std::uint32_t kFirstCapacity = 3;

    static std::size_t Bytes_For(std::uint32_t capacity) noexcept {
        return sizeof(Links) + capacity * sizeof(ULONG);
    }

    // Null without memory.
    static Links* Make(ULONG referenced_id) noexcept {
        void* const block = rv::Heap_Allocate(Bytes_For(kFirstCapacity));
        if (!block) return nullptr;
        auto* const links = ::new (block) Links{kFirstCapacity, 0, 0};
        links->Append(referenced_id);
        return links;
    }

    void Append(ULONG referenced_id) noexcept { Ids()[last++] = referenced_id; }

    // By moving the shorter side, so that ids that go in the order of their coming go at once.
    void Remove(ULONG* id) noexcept {
        if (id - begin() < end() - id) {
            std::move_backward(begin(), id, id + 1);
            ++first;
        } else {
            std::move(id + 1, end(), id);
            --last;
        }
    }

    // Makes room for one more in a full block, which may move. Throws CMemoryException*.
    static Links* Make_Room(Links* links) {
        // What is free in front is more than half of the block, which pays for the move.
        if (links->first > links->capacity / 2) {
            std::move(links->begin(), links->end(), links->Ids());
            links->last -= links->first;
            links->first = 0;
            return links;
        }
        constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max() / 2 - 1;
        if (links->capacity > kMost) AfxThrowMemoryException();
        const std::uint32_t capacity = 2 * links->capacity + kFirstCapacity;
        void* const block = rv::Heap_Reallocate(links, Bytes_For(capacity));
        if (!block) AfxThrowMemoryException();
        auto* const grown = static_cast<Links*>(block);
        grown->capacity = capacity;
        return grown;
    }

    bool Full() const noexcept { return last == capacity; }
    ULONG* Ids() noexcept { return reinterpret_cast<ULONG*>(this + 1); }
    ULONG* begin() noexcept { return Ids() + first; }
    ULONG* end() noexcept { return Ids() + last; }

    std::uint32_t capacity;
    std::uint32_t first;
    std::uint32_t last;
};

RVDwordCrossRef::RVDwordCrossRef() noexcept = default;

RVDwordCrossRef::~RVDwordCrossRef() {
    Remove_All_Links();
}

void RVDwordCrossRef::Add_Link(ULONG key, ULONG referenced_id) {
    Links* links = m_Links.Find(key);
    if (!links) return Add_Key(key, referenced_id);
    if (links->Full()) m_Links.Set(key, links = Links::Make_Room(links));
    links->Append(referenced_id);
}

void RVDwordCrossRef::Add_Key(ULONG key, ULONG referenced_id) {
    std::unique_ptr<Links, rv::HeapDeleter> links(Links::Make(referenced_id));
    if (!links) {
        pProgrammer_Error(kNoMemory, "DwordCrossRef", __LINE__, true);
        return;
    }
    m_Links.Reserve_One();
    m_Links.Set(key, links.release());
}

bool RVDwordCrossRef::Get_Ref_List(ULONG key, CList<ULONG, ULONG>& list) {
    list.RemoveAll();
    Links* const links = m_Links.Find(key);
    if (!links) return false;
    list.Expect(links->end() - links->begin());
    try {
        for (const ULONG referenced_id : *links)
            list.AddTail(referenced_id);
    } catch (...) {
        list.RemoveAll();
        throw;
    }
    return true;
}

void RVDwordCrossRef::Remove_Link(ULONG key, ULONG referenced_id) {
    Links* const links = m_Links.Find(key);
    if (!links) return;
    ULONG* const id = std::find(links->begin(), links->end(), referenced_id);
    if (id == links->end()) return;
    links->Remove(id);
    if (links->begin() != links->end()) return;
    m_Links.Erase(key);
    rv::Heap_Free(links);
}

void RVDwordCrossRef::Remove_All_Links() noexcept {
    m_Links.For_Each([](Links* links) { rv::Heap_Free(links); });
    m_Links.Clear();
}
