// Mutexes that processes share by name.
#pragma once

#include "../export.h"
#include "types.h"
#include "wait.h"

struct SECURITY_ATTRIBUTES;

// Reaches the mutex `name`, which is made, and free, when it is not there yet. CloseHandle ends the
// handle, which does not release the mutex.
//
// `name`: 1 to MAX_PATH - 1 characters, case counts. It is the user's own, also with the prefix
// `Local\`; with the prefix `Global\` it is that of all users, who have to trust each other: any
// of them can keep it for good, or cut its file in /dev/shm short, which ends the processes that
// use it. There is no other backslash in it. Mutexes and memory blocks have their names in common.
// `security`: null. `initially_owned`: FALSE.
//
// The thread that owns a mutex may wait for it again; each waiting needs its own ReleaseMutex. Who
// ends without it, a killed process included, passes the mutex on. A mutex that no process has a
// handle to is kept by those that had one, up to 32 each, so that its next use is fast.
//
// A child process that fork made without exec has none of its parent's handles: it makes its own
// and only closes those that it inherited.
//
// Null on failure: ERROR_INVALID_HANDLE when a block has the name, ERROR_INVALID_NAME,
// ERROR_FILENAME_EXCED_RANGE and ERROR_PATH_NOT_FOUND for names against the above,
// ERROR_ACCESS_DENIED and ERROR_FILE_CORRUPT when somebody put something else in its place under
// /dev/shm, ERROR_INVALID_PARAMETER, ERROR_NOT_ENOUGH_MEMORY, or what the system tells. Any thread.
[[nodiscard]] RVPLATFORM_API HANDLE CreateMutexA(SECURITY_ATTRIBUTES* security,
                                                 BOOL initially_owned, LPCSTR name) noexcept;

// Gives up one level of ownership. FALSE with ERROR_NOT_OWNER when the calling thread does not own
// the mutex, ERROR_INVALID_HANDLE when the handle is none of a mutex. Makes no system call where
// nobody waits.
RVPLATFORM_API BOOL ReleaseMutex(HANDLE mutex) noexcept;
