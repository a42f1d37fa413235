// UTF-8 texts of files and narrow texts of programs.
//
// On Windows, narrow texts are in the code page of the thread's locale, and a character that it
// lacks becomes a question mark. Elsewhere programs take UTF-8 as it is, whatever the locale.
#pragma once

#include "export.h"

namespace rv {

// Both convert `length` bytes, which are valid, and give how many bytes they wrote to `target` of
// `room` bytes, without a terminator; -1 when there is not enough room, and `target` may then hold
// anything, or no memory. Twice the length always does for a narrow text, three times for UTF-8.
// Any thread.
[[nodiscard]] RVPLATFORM_API int Text_From_Utf8(const char* utf8, int length, char* target,
                                                int room) noexcept;
[[nodiscard]] RVPLATFORM_API int Utf8_From_Text(const char* text, int length, char* target,
                                                int room) noexcept;

}  // namespace rv
