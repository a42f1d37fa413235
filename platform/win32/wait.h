// Waiting for kernel objects.
#pragma once

#include "../export.h"
#include "types.h"

inline constexpr DWORD INFINITE = 0xFFFFFFFF;

inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_ABANDONED = 0x80;
inline constexpr DWORD WAIT_TIMEOUT = 0x102;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

// Waits until the calling thread owns a mutex, but no longer than so many milliseconds, or without
// limit for INFINITE. WAIT_OBJECT_0 when it owns the mutex; WAIT_ABANDONED when it owns it after a
// thread that ended without releasing it, in whatever way, in whatever process; WAIT_TIMEOUT;
// WAIT_FAILED with ERROR_INVALID_HANDLE for anything but a mutex. Any thread.
RVPLATFORM_API DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) noexcept;
