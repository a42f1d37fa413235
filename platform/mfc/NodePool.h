// Storage for the nodes of the linked collections, taken from the heap in blocks.
#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <utility>

#include "Allocation.h"

namespace rv {

// Makes nodes in blocks of a fixed number, so that a node costs no allocation of its own. A node
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
        if (!m_Free) Add_Block();
        // The slot leaves the free list only when the node stands: a constructor may throw, and it
        // may not come back here.
        Slot* const slot = m_Free;
        Slot* const rest = slot->m_NextFree;
        Node* node;
        try {
            node = ::new (static_cast<void*>(slot)) Node{std::forward<Arguments>(arguments)...};
        } catch (...) {
            ::new (static_cast<void*>(slot)) Slot{rest};
            throw;
        }
        m_Free = rest;
        return node;
    }

    void Destroy(Node* node) noexcept {
        node->~Node();
        m_Free = ::new (static_cast<void*>(node)) Slot{m_Free};
    }

    // Gives all blocks back.
    void Clear() noexcept {
        while (m_Blocks)
            Heap_Free(std::exchange(m_Blocks, m_Blocks->m_Next));
        m_Free = nullptr;
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

    void Add_Block() {
        constexpr std::size_t kMost =
            (std::numeric_limits<std::size_t>::max() - sizeof(Block)) / sizeof(Node);
        if (m_NodesPerBlock > kMost) AfxThrowMemoryException();
        void* const memory = Heap_Allocate(sizeof(Block) + m_NodesPerBlock * sizeof(Node));
        if (!memory) AfxThrowMemoryException();
        m_Blocks = ::new (memory) Block{m_Blocks};
        // Handed out from the first to the last, so that a walk runs forward through memory.
        std::byte* const first = static_cast<std::byte*>(memory) + sizeof(Block);
        for (std::size_t i = m_NodesPerBlock; i-- > 0;)
            m_Free = ::new (static_cast<void*>(first + i * sizeof(Node))) Slot{m_Free};
    }

    const std::size_t m_NodesPerBlock;
    Block* m_Blocks = nullptr;
    Slot* m_Free = nullptr;
};

}  // namespace rv
