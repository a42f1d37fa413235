// Settings files of sections, names and values, which people write.
#pragma once

#include "../export.h"
#include "types.h"

// The number behind `name` in the section `section` of the file `path`, `missing` when there is no
// such file, section or name, or nothing behind it.
//
//     ; a comment
//     [Translation]
//     LiveMode = 1
//
// Of several sections or names that are alike the first one counts; letters of ASCII count without
// their case, and white space around sections, names and values does not count, nor does anything
// behind a section's bracket or a byte order mark of UTF-8. A line ends with LF, CR or both. A
// value may stand in quotes of either kind. Its number begins with a sign or none and ends before
// the first character that is none of its digits; 0x, 0o and 0b in front of them tell another base
// than ten. No digits are 0, and of a number too large the low 32 bits are left.
//
// `section`, `name`: not null. `path`: see path.h; a name alone is in the current directory, since
// this system has none for settings files. It is read at each call, and up to 256 MiB. Without
// memory: `missing`. Any thread.
[[nodiscard]] RVPLATFORM_API UINT GetPrivateProfileIntA(LPCSTR section, LPCSTR name, INT missing,
                                                        LPCSTR path) noexcept;
