// Storage for the nodes of the linked collections, taken from the heap in blocks.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>
#include <utility>

#include "Allocation.h"

namespace rv {

// Makes nodes in blocks of a given number, so that a node costs no allocation of its own. A node
// never moves. The owner destroys every node before it clears or ends the pool.
template <class Node>
class NodePool {
public:
    // `nodes_per_block`: below 1 counts as 1.
    explicit NodePool(std::ptrdiff_t nodes_per_block) noexcept
        : m_NodesPerBlock(nodes_per_block < 1 ? 1 : static_cast<std::size_t>(nodes_per_block)) {}
    NodePool(const NodePool&) = delete;
    NodePool& operator=(const NodePool&) = delete;
    ~NodePool() { Clear(); }

    // Throws CMemoryException*, or what the node's constructor throws; no node is made then.
    template <class... Arguments>
    Node* Make(Arguments&&... arguments) {
        if (m_Free) return Make_In_Slot(std::forward<Arguments>(arguments)...);
        if (m_Fresh == m_End) Add_Block();
        // In the order of memory, so that a walk runs forward through it.
        Node* const node = Construct(m_Fresh, std::forward<Arguments>(arguments)...);
        m_Fresh += sizeof(Node);
        return node;
    }

    // Takes memory in larger blocks for the next `count` nodes.
    void Expect(std::size_t count) noexcept { m_Expected = count; }

    void Destroy(Node* node) noexcept {
        node->~Node();
        m_Free = ::new (static_cast<void*>(node)) Slot{m_Free};
    }

    // Gives all blocks back.
    void Clear() noexcept {
        while (m_Blocks)
            Heap_Free(std::exchange(m_Blocks, m_Blocks->m_Next));
        m_Free = nullptr;
        m_Fresh = m_End = nullptr;
        m_Expected = 0;
    }

private:
    struct Slot {
        Slot* m_NextFree;
    };
    struct alignas(std::max_align_t) Block {
        Block* m_Next;
    };
    static_assert(alignof(Node) <= alignof(std::max_align_t) && sizeof(Node) >= sizeof(Slot) &&
                  alignof(Node) >= alignof(Slot));

    template <class... Arguments>
    static Node* Construct(void* place, Arguments&&... arguments) {
        return ::new (place) Node{std::forward<Arguments>(arguments)...};
    }

    // The slot leaves the free list only when the node stands: a constructor may throw, and it may
    // not come back here.
    template <class... Arguments>
    Node* Make_In_Slot(Arguments&&... arguments) {
        Slot* const slot = m_Free;
        Slot* const rest = slot->m_NextFree;
        Node* node;
        try {
            node = Construct(slot, std::forward<Arguments>(arguments)...);
        } catch (...) {
            ::new (static_cast<void*>(slot)) Slot{rest};
            throw;
        }
        m_Free = rest;
        return node;
    }

    // Larger blocks are of a size that heaps keep at hand: one from the system has to be cleared,
    // page by page.
    std::size_t Next_Block_Nodes() const noexcept {
        constexpr std::size_t kAtHand = (std::size_t{1000} - sizeof(Block)) / sizeof(Node);
        return std::max(m_NodesPerBlock, std::min(m_Expected, kAtHand));
    }

    void Add_Block() {
        constexpr std::size_t kMost =
            (std::numeric_limits<std::size_t>::max() - sizeof(Block)) / sizeof(Node);
        const std::size_t nodes = Next_Block_Nodes();
        if (nodes > kMost) AfxThrowMemoryException();
        void* const memory = Heap_Allocate(sizeof(Block) + nodes * sizeof(Node));
        if (!memory) AfxThrowMemoryException();
        m_Expected -= std::min(m_Expected, nodes);
        m_Blocks = ::new (memory) Block{m_Blocks};
        m_Fresh = static_cast<std::byte*>(memory) + sizeof(Block);
        m_End = m_Fresh + nodes * sizeof(Node);
    }

    const std::size_t m_NodesPerBlock;
    std::size_t m_Expected = 0;
    Block* m_Blocks = nullptr;
    Slot* m_Free = nullptr;        // where nodes were destroyed
    std::byte* m_Fresh = nullptr;  // what the newest block has left, up to m_End
    std::byte* m_End = nullptr;
};

}  // namespace rv
