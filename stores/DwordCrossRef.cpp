#include "DwordCrossRef.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "../frame/RVDev.h"

namespace {

constexpr unsigned int kNoMemory = 23;

// Of ids in a key's first block; later ones are twice as long each.
constexpr std::uint32_t kFirstCapacity = 4;

}  // namespace

// Nobody keeps how long a block is: it may end wherever one could that only ever grew.
bool RVDwordCrossRef::Links::Full() const noexcept {
    return last >= kFirstCapacity && std::has_single_bit(last);
}

// Makes room for one more in a full block. Throws CMemoryException*.
void RVDwordCrossRef::Links::Make_Room() {
    // What is free in front is more than half of the block, which pays for the move.
    if (first > last / 2) {
        std::move(begin(), end(), ids);
        last -= first;
        first = 0;
        return;
    }
    constexpr std::uint32_t kMost = std::uint32_t{1} << 31;
    if (last == kMost) AfxThrowMemoryException();
    void* const block = rv::Heap_Reallocate(ids, 2 * std::size_t{last} * sizeof(ULONG));
    if (!block) AfxThrowMemoryException();
    ids = static_cast<ULONG*>(block);
}

// By moving the shorter side, so that ids that go in the order of their coming go at once.
void RVDwordCrossRef::Links::Remove(ULONG* id) noexcept {
    if (id - begin() < end() - id) {
        std::move_backward(begin(), id, id + 1);
        ++first;
    } else {
        std::move(id + 1, end(), id);
        --last;
    }
}

RVDwordCrossRef::RVDwordCrossRef() noexcept = default;

RVDwordCrossRef::~RVDwordCrossRef() {
    Remove_All_Links();
}

void RVDwordCrossRef::Add_Link(ULONG key, ULONG referenced_id) {
    Links* const links = m_Links.Find(key);
    if (!links) return Add_Key(key, referenced_id);
    if (links->Full()) links->Make_Room();
    links->ids[links->last++] = referenced_id;
}

void RVDwordCrossRef::Add_Key(ULONG key, ULONG referenced_id) {
    std::unique_ptr<void, rv::HeapDeleter> block(rv::Heap_Allocate(kFirstCapacity * sizeof(ULONG)));
    if (!block) {
        pProgrammer_Error(kNoMemory, "DwordCrossRef", __LINE__, true);
        return;
    }
    m_Links.Reserve_One();
    auto* const ids = static_cast<ULONG*>(block.release());
    ids[0] = referenced_id;
    m_Links.Set(key, {0, 1, ids});
}

bool RVDwordCrossRef::Get_Ref_List(ULONG key, CList<ULONG, ULONG>& list) {
    list.RemoveAll();
    const Links* const links = m_Links.Find(key);
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
    if (links->first != links->last) return;
    rv::Heap_Free(links->ids);
    m_Links.Erase(key);
}

void RVDwordCrossRef::Remove_All_Links() noexcept {
    m_Links.For_Each([](const Links& links) { rv::Heap_Free(links.ids); });
    m_Links.Clear();
}
