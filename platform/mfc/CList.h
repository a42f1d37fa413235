// The class library's list, and what it shares with the map.
#pragma once

#include <cassert>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "../winapi.h"
#include "Allocation.h"
#include "NodePool.h"

// A place in a collection: null behind the last one. It stays good until its element is removed.
struct __POSITION {};
using POSITION = __POSITION*;

// Whether an element or a key is the one looked for. A type joins with a specialisation of its own.
template <class TYPE, class ARG_TYPE>
BOOL CompareElements(const TYPE* element, const ARG_TYPE* wanted) {
    return *element == *wanted;
}

// A doubly linked list. ARG_TYPE is how elements are passed in.
//
// An operation that cannot have memory throws CMemoryException*, and one that copies an element
// throws what the copy throws; the list is then as it was. A position that is handed in is one of
// this list, and not null. A list may be read by several threads at once.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CList : public rv::HeapObject {
public:
    // Nodes are taken from the heap `block_size` at a time.
    explicit CList(INT_PTR block_size = 10) noexcept : m_Pool(block_size) {}
    CList(const CList&) = delete;
    CList& operator=(const CList&) = delete;
    ~CList() { RemoveAll(); }

    INT_PTR GetCount() const noexcept { return m_Count; }
    BOOL IsEmpty() const noexcept { return m_Count == 0; }

    POSITION AddHead(ARG_TYPE element) { return Insert(m_Head, element); }
    POSITION AddTail(ARG_TYPE element) { return Insert(nullptr, element); }
    // Before the element at `position`.
    POSITION InsertBefore(POSITION position, ARG_TYPE element) {
        return Insert(Node_At(position), element);
    }

    // Says that `count` elements are about to be added: memory for them is taken in larger blocks.
    // Ours: the published class has nothing like it.
    void Expect(INT_PTR count) noexcept {
        m_Pool.Expect(count > 0 ? static_cast<std::size_t>(count) : 0);
    }

    // Takes the first element off the list, which must not be empty.
    TYPE RemoveHead() {
        assert(m_Head);
        TYPE element = std::move(m_Head->m_Data);
        Remove(m_Head);
        return element;
    }
    void RemoveAt(POSITION position) noexcept { Remove(Node_At(position)); }
    // Gives the memory back, too.
    void RemoveAll() noexcept {
        if constexpr (!std::is_trivially_destructible_v<TYPE>) {
            for (Node* node = m_Head; node;)
                std::exchange(node, node->m_Next)->~Node();
        }
        m_Head = nullptr;
        m_Tail = nullptr;
        m_Count = 0;
        m_Pool.Clear();
    }

    POSITION GetHeadPosition() const noexcept { return Position_Of(m_Head); }
    // The element at `position`, which moves on to the next one.
    TYPE& GetNext(POSITION& position) noexcept { return Step(position)->m_Data; }
    const TYPE& GetNext(POSITION& position) const noexcept { return Step(position)->m_Data; }
    TYPE& GetAt(POSITION position) noexcept { return Node_At(position)->m_Data; }
    const TYPE& GetAt(POSITION position) const noexcept { return Node_At(position)->m_Data; }

    // The first element from the head that CompareElements holds equal, or null.
    POSITION Find(ARG_TYPE wanted) const {
        for (Node* node = m_Head; node; node = node->m_Next)
            if (CompareElements(&node->m_Data, &wanted)) return Position_Of(node);
        return nullptr;
    }

private:
    struct Node {
        Node* m_Previous;
        Node* m_Next;
        TYPE m_Data;
    };

    static POSITION Position_Of(Node* node) noexcept { return reinterpret_cast<POSITION>(node); }
    static Node* Node_At(POSITION position) noexcept {
        assert(position);
        return reinterpret_cast<Node*>(position);
    }
    static Node* Step(POSITION& position) noexcept {
        Node* const node = Node_At(position);
        position = Position_Of(node->m_Next);
        return node;
    }

    // Before `next`, at the tail for null.
    POSITION Insert(Node* next, ARG_TYPE element) {
        Node* const previous = next ? next->m_Previous : m_Tail;
        Node* const node = m_Pool.Make(previous, next, element);
        (previous ? previous->m_Next : m_Head) = node;
        (next ? next->m_Previous : m_Tail) = node;
        ++m_Count;
        return Position_Of(node);
    }
    void Remove(Node* node) noexcept {
        (node->m_Previous ? node->m_Previous->m_Next : m_Head) = node->m_Next;
        (node->m_Next ? node->m_Next->m_Previous : m_Tail) = node->m_Previous;
        --m_Count;
        m_Pool.Destroy(node);
    }

    rv::NodePool<Node> m_Pool;
    Node* m_Head = nullptr;
    Node* m_Tail = nullptr;
    INT_PTR m_Count = 0;
};
