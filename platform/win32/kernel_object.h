// What a handle points to.
#pragma once

#include <cstddef>
#include <new>

#include "../heap.h"
#include "types.h"

namespace rv {

// Base of the things that handles stand for. Made with new (std::nothrow), ended by CloseHandle.
class KernelObject {
public:
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject();

    // Lets go of what the object holds; the destructor does it in silence. Gives the error that the
    // system told.
    [[nodiscard]] virtual DWORD Close() noexcept = 0;

    static void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
        return Heap_Allocate(bytes);
    }
    static void operator delete(void* block) noexcept { Heap_Free(block); }
    static void operator delete(void* block, const std::nothrow_t&) noexcept { Heap_Free(block); }
};

// The object behind a handle, null for null and INVALID_HANDLE_VALUE.
[[nodiscard]] KernelObject* Object_Of(HANDLE handle) noexcept;

}  // namespace rv
