// The clock, the local time and the zone of the Windows run-time library.
//
// The zone is that of the process: the environment variable TZ, read anew at every call, else the
// system's own. A name that the system does not know counts as UTC. Any thread, as long as none
// changes the environment meanwhile.
#pragma once

#include <cstdint>
#include <ctime>

#include "../export.h"
#include "types.h"

using errno_t = int;
using __time32_t = std::int32_t;
using __time64_t = std::int64_t;

// The present moment in seconds since 1 January 1970 UTC, also written to `seconds` unless that is
// null.
RVPLATFORM_API __time64_t _time64(__time64_t* seconds) noexcept;

// Breaks `seconds` since 1 January 1970 UTC down into local time. Gives 0, or EINVAL, in errno too,
// for what it cannot express: seconds below 0 or beyond the year 3000. All fields of `local` are
// then -1.
[[nodiscard]] RVPLATFORM_API errno_t _localtime64_s(std::tm* local,
                                                    const __time64_t* seconds) noexcept;
// The same for seconds of 32 bits. The daylight flag, tm_isdst, is set while the local clock is
// ahead of what _get_timezone tells, whichever half of the year the zone's law calls standard time;
// above it is as that law has it.
[[nodiscard]] RVPLATFORM_API errno_t _localtime32_s(std::tm* local,
                                                    const __time32_t* seconds) noexcept;

// Seconds since 1 January 1970 UTC of a local time, whose fields up to the year are a moment of the
// calendar; the others are not looked at. An hour that comes twice is taken as what the zone's law
// calls standard time, one that is skipped as daylight saving time. -1, with EINVAL in errno, for
// what it cannot express: a moment before 1970 UTC or beyond the year 3000.
[[nodiscard]] RVPLATFORM_API __time64_t _mktime64(std::tm* local) noexcept;

// Writes the seconds to add to the zone's standard time of today to reach UTC: positive west of
// Greenwich. Gives 0, or EINVAL for null.
RVPLATFORM_API errno_t _get_timezone(LONG* seconds) noexcept;
