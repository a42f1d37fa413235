#include "thread.h"

#include <unistd.h>

DWORD GetCurrentThreadId() noexcept {
    return static_cast<DWORD>(gettid());
}
