// Handles of kernel objects.
#pragma once

#include <cstdint>

#include "../export.h"
#include "types.h"

// What CreateFileA gives on failure.
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(std::intptr_t{-1}))

// Ends a handle, which names nothing afterwards, whatever the result. FALSE tells a failure that
// the system kept until now (a file server's full disk, for one), or ERROR_INVALID_HANDLE for null
// and INVALID_HANDLE_VALUE. Any thread.
RVPLATFORM_API BOOL CloseHandle(HANDLE handle) noexcept;
