// Threads.
#pragma once

#include "../export.h"
#include "types.h"

// The number of the calling thread, which no other one of the system has as long as it lives.
[[nodiscard]] RVPLATFORM_API DWORD GetCurrentThreadId() noexcept;
