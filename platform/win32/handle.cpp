// The end of handles.
#include "handle.h"

#include "error.h"
#include "kernel_object.h"

rv::KernelObject::~KernelObject() = default;

void rv::KernelObject::Drop() noexcept {
    delete this;
}

rv::KernelObject* rv::Object_Of(HANDLE handle) noexcept {
    return handle == INVALID_HANDLE_VALUE ? nullptr : static_cast<KernelObject*>(handle);
}

BOOL CloseHandle(HANDLE handle) noexcept {
    rv::KernelObject* const object = rv::Object_Of(handle);
    const DWORD error = object ? object->Close() : ERROR_INVALID_HANDLE;
    if (object) object->Drop();
    if (error != ERROR_SUCCESS) SetLastError(error);
    return error == ERROR_SUCCESS;
}
