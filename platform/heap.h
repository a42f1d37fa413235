// The memory of the house: what every room, this layer included, allocates from.
//
// It stands below the class names, so that the Win32 names can use it as well; Allocation.h has the
// hook that can refuse an allocation, and the forms for containers and objects.
#pragma once

#include <cstddef>
#include <memory>

#include "export.h"

namespace rv {

// As std::malloc, std::realloc and std::free, behind the hook: null when there is no memory. A
// request for 0 bytes gives a block, too. A refused Heap_Reallocate leaves the old block as it was;
// freeing null does nothing. Any thread.
[[nodiscard]] RVPLATFORM_API void* Heap_Allocate(std::size_t bytes) noexcept;
[[nodiscard]] RVPLATFORM_API void* Heap_Reallocate(void* block, std::size_t bytes) noexcept;
RVPLATFORM_API void Heap_Free(void* block) noexcept;

struct HeapDeleter {
    void operator()(void* block) const noexcept { Heap_Free(block); }
};

// A block of characters with one owner.
using HeapText = std::unique_ptr<char[], HeapDeleter>;

}  // namespace rv
