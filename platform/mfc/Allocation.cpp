// The memory of the house, and the hook that can refuse it.
#include "Allocation.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "../large_pages.h"

namespace {

std::atomic<AFX_ALLOC_HOOK> g_Hook = nullptr;

bool Permitted(std::size_t bytes) noexcept {
    const AFX_ALLOC_HOOK hook = g_Hook.load(std::memory_order_acquire);
    return !hook || hook(bytes, FALSE, 0);
}

// The run-time libraries differ in what they give for 0 bytes: null would read as a failure, and
// std::realloc may free the block.
std::size_t At_Least_One(std::size_t bytes) noexcept {
    return std::max<std::size_t>(bytes, 1);
}

}  // namespace

AFX_ALLOC_HOOK AfxSetAllocHook(AFX_ALLOC_HOOK hook) noexcept {
    return g_Hook.exchange(hook, std::memory_order_acq_rel);
}

namespace rv {

void* Heap_Allocate(std::size_t bytes) noexcept {
    if (!Permitted(bytes)) return nullptr;
    void* const block = std::malloc(At_Least_One(bytes));
    Prefer_Large_Pages(block, bytes);
    return block;
}

void* Heap_Reallocate(void* block, std::size_t bytes) noexcept {
    if (!Permitted(bytes)) return nullptr;
    void* const grown = std::realloc(block, At_Least_One(bytes));
    Prefer_Large_Pages(grown, bytes);
    return grown;
}

void Heap_Free(void* block) noexcept {
    std::free(block);
}

}  // namespace rv
