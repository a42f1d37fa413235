// A lock between processes, for as long as an object lives.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CString.h"
#include "../platform/winapi.h"

// Holds the mutex that belongs to a GUID: everybody who makes an object from the same GUID, in any
// thread of any process of the user, waits until the one before is gone, without limit.
//
//     {
//         const RVMutex only_us(kGuid);
//         ...
//     }
//
// The thread that holds a mutex may make further objects from the same GUID; the mutex is free when
// all are gone. Copies share one hold: the mutex is not taken a second time, and the last copy
// gives it back. The last one ends on the thread that made the first, for only that can give it
// back. One that ends without it, a killed process included, passes it on.
//
// Nothing is reported. Where the mutex cannot be made, the object is there without it, and what it
// guards runs unguarded. Without memory the constructor throws CMemoryException*, and nothing is
// held.
class RVUTILS_API RVMutex {
public:
    // Waits until the mutex of this GUID is free, however long that takes, and holds it.
    explicit RVMutex(const GUID& guid);
    RVMutex(const RVMutex& other);
    // Gives back what the object held before, unless it has other copies.
    RVMutex& operator=(const RVMutex& other);
    ~RVMutex();

private:
    struct Copies;

    HANDLE m_Handle = nullptr;  // null when the mutex could not be made
    CString m_Name;
    mutable Copies* m_Copies = nullptr;  // null until there is one
};
