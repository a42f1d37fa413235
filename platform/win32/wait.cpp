#include "wait.h"

#include "error.h"
#include "kernel_object.h"

DWORD rv::KernelObject::Wait(DWORD) noexcept {
    SetLastError(ERROR_INVALID_HANDLE);
    return WAIT_FAILED;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) noexcept {
    rv::KernelObject* const object = rv::Object_Of(handle);
    if (object) return object->Wait(milliseconds);
    SetLastError(ERROR_INVALID_HANDLE);
    return WAIT_FAILED;
}
