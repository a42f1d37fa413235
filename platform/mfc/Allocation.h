// The one door through which the class names and the library take memory.
//
// A hook can refuse an allocation, on every platform alike, so that each path behind an exhausted
// heap can be walked.
#pragma once

#include <cstddef>
#include <limits>

#include "../export.h"
#include "../heap.h"
#include "../winapi.h"
#include "CException.h"
#include "HeapObject.h"

// Decides whether an allocation of `bytes` may go on; false makes it fail like an exhausted heap.
// `is_object` and `request` are always FALSE and 0 and stand for the published shape. Must not
// throw. Called from any thread that allocates.
using AFX_ALLOC_HOOK = BOOL (*)(std::size_t bytes, BOOL is_object, LONG request);

// Installs `hook`, null for none, and gives back the one before. Any thread.
RVPLATFORM_API AFX_ALLOC_HOOK AfxSetAllocHook(AFX_ALLOC_HOOK hook) noexcept;

namespace rv {

// The same memory for the standard containers; throws CMemoryException* when there is none.
template <class T>
struct HeapAllocator {
    using value_type = T;

    HeapAllocator() = default;
    template <class U>
    HeapAllocator(const HeapAllocator<U>&) noexcept {}

    [[nodiscard]] T* allocate(std::size_t count) {
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) AfxThrowMemoryException();
        void* const block = Heap_Allocate(count * sizeof(T));
        if (!block) AfxThrowMemoryException();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) noexcept { Heap_Free(block); }

    template <class U>
    bool operator==(const HeapAllocator<U>&) const noexcept {
        return true;
    }
};

}  // namespace rv
