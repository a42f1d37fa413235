// Locks between processes.
#pragma once

#include "CSingleLock.h"

// A mutex that all threads of all processes share by its name. The thread that holds it may take it
// again; each taking needs its own release. One that ends without releasing it, a killed process
// included, passes it on.
class RVPLATFORM_API CMutex : public CSyncObject {
public:
    // Reaches the mutex, which is made when it is not there yet. When it cannot be had, the object
    // is there without it: m_hObject is null, and Lock and Unlock give FALSE.
    //
    // `name`: 1 to MAX_PATH - 1 characters, with a backslash only in a leading "Global\" or
    // "Local\". `initially_owned`: FALSE. `security`: null.
    CMutex(BOOL initially_owned, const char* name, SECURITY_ATTRIBUTES* security = nullptr) noexcept
        : m_hObject(CreateMutexA(security, initially_owned, name)) {}
    // Does not release it.
    ~CMutex() override;

    // Waits so many milliseconds at most, without limit for INFINITE.
    BOOL Lock(DWORD timeout = INFINITE) override;
    BOOL Unlock() override;

    HANDLE m_hObject;
};
