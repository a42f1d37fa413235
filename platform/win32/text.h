// Narrow text to wide and back.
//
// The narrow encoding is the multibyte one of the calling thread's LC_CTYPE locale, for both code
// pages below. A byte that is not valid in it becomes the lone code unit U+DC00 + byte (0xDC80 to
// 0xDCFF), which becomes that byte again: narrow text survives the way there and back, whatever
// its bytes.
//
// Both functions:
// - `length` counts the source's units; -1: up to its terminator, which is then converted, too. 0
//   is refused with ERROR_INVALID_PARAMETER, as is a null source.
// - `room` counts the target's units; 0: nothing is written, the result is the room it would take.
// - They give the number of units written, 0 on failure: ERROR_INSUFFICIENT_BUFFER when the room
//   does not do (the target then holds what fitted), ERROR_INVALID_PARAMETER for another code page,
//   ERROR_INVALID_FLAGS for flags other than 0.
// Any thread.
#pragma once

#include "../export.h"
#include "types.h"

inline constexpr UINT CP_ACP = 0;
inline constexpr UINT CP_THREAD_ACP = 3;

RVPLATFORM_API int MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR source, int length,
                                       LPWSTR target, int room) noexcept;

// A character that the encoding lacks becomes the first byte of `replacement`, '?' when that is
// null, and `*replaced`, unless null, tells whether there was one.
RVPLATFORM_API int WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR source, int length,
                                       LPSTR target, int room, LPCSTR replacement,
                                       BOOL* replaced) noexcept;
