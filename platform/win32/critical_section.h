// Locks inside of one process.
#pragma once

#include <pthread.h>

#include "../export.h"
#include "types.h"

// Not copied, nor moved while it is in use.
struct CRITICAL_SECTION {
    pthread_mutex_t mutex;
};

// Makes a lock that the thread that holds it may take again; each taking needs its own release.
// `spins` has no effect. FALSE with ERROR_NOT_ENOUGH_MEMORY when the system has none to give.
[[nodiscard]] RVPLATFORM_API BOOL InitializeCriticalSectionAndSpinCount(CRITICAL_SECTION* section,
                                                                        DWORD spins) noexcept;
// Waits without limit.
inline void EnterCriticalSection(CRITICAL_SECTION* section) noexcept {
    pthread_mutex_lock(&section->mutex);
}
// By the thread that holds it.
inline void LeaveCriticalSection(CRITICAL_SECTION* section) noexcept {
    pthread_mutex_unlock(&section->mutex);
}
// When nobody holds it, nor will.
inline void DeleteCriticalSection(CRITICAL_SECTION* section) noexcept {
    pthread_mutex_destroy(&section->mutex);
}
