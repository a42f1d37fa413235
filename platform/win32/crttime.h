// The clock and the local time of the Windows run-time library.
#pragma once

#include <cstdint>
#include <ctime>

#include "../export.h"

using errno_t = int;
using __time64_t = std::int64_t;

// The present moment in seconds since 1 January 1970 UTC, also written to `seconds` unless that is
// null. Any thread.
RVPLATFORM_API __time64_t _time64(__time64_t* seconds) noexcept;

// Breaks `seconds` since 1 January 1970 UTC down into the local time of the process's zone, the
// environment variable TZ, which is read anew at every call. Gives 0, or EINVAL, in errno too, for
// what it cannot express: seconds below 0 or beyond the year 3000. All fields of `local` are then
// -1. Any thread, as long as none changes the environment meanwhile.
[[nodiscard]] RVPLATFORM_API errno_t _localtime64_s(std::tm* local,
                                                    const __time64_t* seconds) noexcept;
