#include "mutex.h"

#include "error.h"
#include "named_object.h"

HANDLE CreateMutexA(SECURITY_ATTRIBUTES* security, BOOL initially_owned, LPCSTR name) noexcept {
    if (security || initially_owned) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    return rv::NamedObject::Reach(name, {rv::ObjectKind::kMutex, true, 0});
}

BOOL ReleaseMutex(HANDLE handle) noexcept {
    rv::NamedObject* const mutex = rv::NamedObject::Of(handle, rv::ObjectKind::kMutex);
    if (!mutex || mutex->Lock().Release()) return mutex != nullptr;
    SetLastError(ERROR_NOT_OWNER);
    return FALSE;
}
