// Objects of the layer, in the memory of the house.
#pragma once

#include <cstddef>
#include <new>

#include "../heap.h"

namespace rv {

// Classes that derive from it are made with new (std::nothrow), which gives null without memory.
struct NothrowObject {
    static void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
        return Heap_Allocate(bytes);
    }
    static void operator delete(void* block) noexcept { Heap_Free(block); }
    static void operator delete(void* block, const std::nothrow_t&) noexcept { Heap_Free(block); }
};

}  // namespace rv
