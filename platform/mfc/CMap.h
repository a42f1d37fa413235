// The class library's map.
#pragma once

#include <algorithm>
#include <cassert>
#include <type_traits>
#include <utility>

#include "../winapi.h"
#include "Allocation.h"
#include "CList.h"
#include "NodePool.h"

// The hash of a key. A key type joins with a specialisation of its own, for the type by which the
// map takes its keys: HashKey<Name&> for a CMap<Name, Name&, ...>. The one here is for ids.
//
// The order of a walk over a map follows from it, so its values are kept for ever.
template <class ARG_KEY>
UINT HashKey(ARG_KEY key) {
    static_assert(std::is_integral_v<std::remove_reference_t<ARG_KEY>> ||
                      std::is_enum_v<std::remove_reference_t<ARG_KEY>>,
                  "give the key type a HashKey of its own");
    // The minimal standard generator of random numbers, by Schrage's method.
    const auto id = static_cast<LONG>(key);
    const LONG hash = 16807 * (id % 127773) - 2836 * (id / 127773);
    return static_cast<UINT>(hash < 0 ? hash + 2147483647 : hash);
}

// A hash table with chains. ARG_KEY and ARG_VALUE are how keys and values are passed in; keys are
// told apart by HashKey and CompareElements.
//
// The number of buckets never changes by itself: 17, until InitHashTable sets another. A walk goes
// through the buckets from the first to the last, and in a bucket from the newest entry to the
// oldest.
// An operation that cannot have memory throws CMemoryException*, and one that copies a key or a
// value throws what the copy throws; the map is then as it was. A map may be read by several
// threads at once.
template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CMap {
public:
    // Entries are taken from the heap `block_size` at a time.
    explicit CMap(INT_PTR block_size = 10) noexcept : m_Pool(block_size) {}
    CMap(const CMap&) = delete;
    CMap& operator=(const CMap&) = delete;
    ~CMap() { RemoveAll(); }

    INT_PTR GetCount() const noexcept { return m_Count; }

    // Sets the number of buckets of an empty map and takes the memory for them, now or with the
    // first entry. A map with entries keeps its buckets, and so does every map for a number of 0.
    void InitHashTable(UINT buckets, BOOL allocate_now = TRUE) {
        if (buckets == 0 || m_Count != 0) return;
        Node** const table = allocate_now ? Make_Table(buckets) : nullptr;
        Free_Table();
        m_Table = table;
        m_Buckets = buckets;
    }

    // False when the key is not there; `value` is then as it was.
    BOOL Lookup(ARG_KEY key, VALUE& value) const {
        const Node* const node = Find(HashKey<ARG_KEY>(key), key);
        if (!node) return FALSE;
        value = node->m_Value;
        return TRUE;
    }

    // The value of `key`. A key that is not there is entered with a value like VALUE().
    VALUE& operator[](ARG_KEY key) {
        const UINT hash = HashKey<ARG_KEY>(key);
        Node* const node = Find(hash, key);
        return (node ? node : Enter(hash, key))->m_Value;
    }
    void SetAt(ARG_KEY key, ARG_VALUE value) {
        const UINT hash = HashKey<ARG_KEY>(key);
        if (Node* const node = Find(hash, key))
            node->m_Value = value;
        else
            Enter(hash, key, value);
    }

    // False when the key is not there.
    BOOL RemoveKey(ARG_KEY key) {
        if (!m_Table) return FALSE;
        const UINT hash = HashKey<ARG_KEY>(key);
        Node** link = &m_Table[hash % m_Buckets];
        while (*link && !(*link)->Is(hash, key))
            link = &(*link)->m_Next;
        Node* const node = *link;
        if (!node) return FALSE;
        *link = node->m_Next;
        --m_Count;
        m_Pool.Destroy(node);
        return TRUE;
    }
    // Gives the memory back, too. The number of buckets stays.
    void RemoveAll() noexcept {
        for (Node* node = First_From(0); node;)
            std::exchange(node, After(node))->~Node();
        m_Count = 0;
        m_Pool.Clear();
        Free_Table();
    }

    // Where a walk starts, null for an empty map.
    POSITION GetStartPosition() const noexcept { return Position_Of(First_From(0)); }
    // Copies the entry at `position`, which is not null, and moves on. A walk lasts as long as no
    // entry is added and none removed that it has not passed.
    void GetNextAssoc(POSITION& position, KEY& key, VALUE& value) const {
        assert(position);
        Node* const node = reinterpret_cast<Node*>(position);
        key = node->m_Key;
        value = node->m_Value;
        position = Position_Of(After(node));
    }

private:
    struct Node {
        Node* m_Next;
        UINT m_Hash;
        KEY m_Key;
        VALUE m_Value;

        bool Is(UINT hash, const std::remove_reference_t<ARG_KEY>& key) const {
            return m_Hash == hash && CompareElements(&m_Key, &key);
        }
    };

    static POSITION Position_Of(Node* node) noexcept { return reinterpret_cast<POSITION>(node); }

    static Node** Make_Table(UINT buckets) {
        Node** const table = rv::HeapAllocator<Node*>().allocate(buckets);
        std::fill_n(table, buckets, nullptr);
        return table;
    }
    void Free_Table() noexcept { rv::Heap_Free(std::exchange(m_Table, nullptr)); }

    Node* Find(UINT hash, const std::remove_reference_t<ARG_KEY>& key) const {
        Node* node = m_Table ? m_Table[hash % m_Buckets] : nullptr;
        while (node && !node->Is(hash, key))
            node = node->m_Next;
        return node;
    }

    // At the head of its chain: what was added last is found first.
    template <class... Value>
    Node* Enter(UINT hash, ARG_KEY key, Value&... value) {
        if (!m_Table) m_Table = Make_Table(m_Buckets);
        Node*& head = m_Table[hash % m_Buckets];
        head = m_Pool.Make(head, hash, key, VALUE(value...));
        ++m_Count;
        return head;
    }

    // The first entry of a bucket at or behind `bucket`.
    Node* First_From(UINT bucket) const noexcept {
        if (m_Count == 0) return nullptr;
        while (bucket < m_Buckets && !m_Table[bucket])
            ++bucket;
        return bucket < m_Buckets ? m_Table[bucket] : nullptr;
    }
    Node* After(const Node* node) const noexcept {
        return node->m_Next ? node->m_Next : First_From(node->m_Hash % m_Buckets + 1);
    }

    rv::NodePool<Node> m_Pool;
    Node** m_Table = nullptr;  // m_Buckets chains, null until the first entry
    UINT m_Buckets = 17;
    INT_PTR m_Count = 0;
};
