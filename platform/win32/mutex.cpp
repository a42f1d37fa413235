#include "mutex.h"

#include "error.h"
#include "named_object.h"

namespace {

class Mutex final : public rv::NamedHandle {
public:
    using NamedHandle::NamedHandle;

    DWORD Wait(DWORD milliseconds) noexcept override {
        switch (Object().Lock().Take(milliseconds)) {
            case rv::RobustLock::Outcome::kTaken:
                return WAIT_OBJECT_0;
            case rv::RobustLock::Outcome::kAbandoned:
                return WAIT_ABANDONED;
            default:
                return WAIT_TIMEOUT;
        }
    }
};

}  // namespace

HANDLE CreateMutexA(SECURITY_ATTRIBUTES* security, BOOL initially_owned, LPCSTR name) noexcept {
    if (security || initially_owned) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    return rv::Open_Handle<Mutex>(rv::NamedObject::Reach(name, {rv::ObjectKind::kMutex, true, 0}));
}

BOOL ReleaseMutex(HANDLE handle) noexcept {
    auto* const mutex = dynamic_cast<Mutex*>(rv::Object_Of(handle));
    if (mutex && mutex->Object().Lock().Release()) return TRUE;
    SetLastError(mutex ? ERROR_NOT_OWNER : ERROR_INVALID_HANDLE);
    return FALSE;
}
