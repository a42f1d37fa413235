// What a handle points to.
#pragma once

#include "nothrow_object.h"
#include "types.h"

namespace rv {

// Base of the things that handles stand for. Made with new (std::nothrow), ended by CloseHandle,
// which closes and then drops them.
class KernelObject : public NothrowObject {
public:
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject();

    // Lets go of what the object holds; the destructor does it in silence. Gives the error that the
    // system told.
    [[nodiscard]] virtual DWORD Close() noexcept = 0;
    // Deletes the object, unless other handles share it.
    virtual void Drop() noexcept;
    // As WaitForSingleObject. This one is for what cannot be waited for.
    [[nodiscard]] virtual DWORD Wait(DWORD milliseconds) noexcept;
};

// The object behind a handle, null for null and INVALID_HANDLE_VALUE.
[[nodiscard]] KernelObject* Object_Of(HANDLE handle) noexcept;

}  // namespace rv
