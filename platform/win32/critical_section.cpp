#include "critical_section.h"

#include "error.h"

BOOL InitializeCriticalSectionAndSpinCount(CRITICAL_SECTION* section, DWORD) noexcept {
    pthread_mutexattr_t kind;
    bool made = pthread_mutexattr_init(&kind) == 0;
    if (made) {
        made = pthread_mutexattr_settype(&kind, PTHREAD_MUTEX_RECURSIVE) == 0 &&
               pthread_mutex_init(&section->mutex, &kind) == 0;
        pthread_mutexattr_destroy(&kind);
    }
    if (!made) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return made;
}
