// Objects that live in the memory of the house.
#pragma once

#include <cstddef>
#include <new>

#include "../export.h"
#include "../heap.h"

// Throws CMemoryException* (see CException.h). Allocates nothing of its own. Any thread.
[[noreturn]] RVPLATFORM_API void AfxThrowMemoryException();

namespace rv {

// Gives classes that derive from it the operators new and delete over that memory. The plain form
// throws CMemoryException*, the nothrow form gives null.
struct HeapObject {
    static void* operator new(std::size_t bytes) {
        void* const block = Heap_Allocate(bytes);
        if (!block) AfxThrowMemoryException();
        return block;
    }
    static void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
        return Heap_Allocate(bytes);
    }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) noexcept { Heap_Free(block); }
    static void operator delete(void* block, const std::nothrow_t&) noexcept { Heap_Free(block); }
    static void operator delete(void*, void*) noexcept {}
};

}  // namespace rv
