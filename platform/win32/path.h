// Paths, as Windows spells them and as this system does.
//
// Every function that takes a path accepts both separators, and a drive letter in front: C: is the
// root, another letter is the directory, or link to one, that bears the letter as its name (upper
// case first) in the directory that the environment variable RVUTILS_DRIVES names. A letter without
// such a directory is ERROR_PATH_NOT_FOUND. A drive has no current directory of its own: what
// follows the letter is always below it, with or without a separator. Any other path is relative
// unless it begins with a separator.
//
// So a name that holds a backslash, or a letter and a colon at its beginning, cannot be said; what
// stands behind "./" needs no care about the latter.
//
// What the functions give is in native form. Any thread, as long as none changes the environment
// or the current directory meanwhile.
#pragma once

#include "../export.h"
#include "types.h"

// Writes the absolute form of `path` to `buffer` of `room` bytes: separators in a row become one
// and levels "." go; levels ".." stay, since what they mean depends on links. `*name`, unless
// `name` is null, points to the last level inside the buffer, or is null when the path ends in a
// separator.
//
// Gives the length without the NUL; when the room does not do, the room it takes, the NUL included,
// and the buffer is as it was; 0 on failure, with ERROR_INVALID_NAME for an empty path.
RVPLATFORM_API DWORD GetFullPathNameA(LPCSTR path, DWORD room, LPSTR buffer, LPSTR* name) noexcept;

// Writes the directory for temporary files with a closing separator: the environment variable
// TMPDIR in absolute form, or "/tmp/" when it is not set or empty. Whether it exists is not looked
// at. The result is as for GetFullPathNameA.
RVPLATFORM_API DWORD GetTempPathA(DWORD room, LPSTR buffer) noexcept;
