// The current directory and drive of the process, and new directories.
//
// Paths are those of path.h. There is one current directory. The current drive is C: until
// _chdrive chooses another; it decides nothing about other paths. Any thread, as long as no two
// change the current directory at once.
//
// Failures are told by errno.
#pragma once

#include <cstddef>

#include "../export.h"
#include "types.h"

// Writes the current directory to `buffer` of `room` bytes, in native form. Null on failure: ERANGE
// when the room does not do, ENOENT when the directory is gone.
RVPLATFORM_API char* _getcwd(char* buffer, int room) noexcept;

// The current drive, 1 for A:, 2 for B:.
[[nodiscard]] RVPLATFORM_API int _getdrive() noexcept;

// Makes a drive the current one, and its top the current directory, unless it is the current one
// already. Gives 0, or -1 with EACCES for a drive that does not exist.
RVPLATFORM_API int _chdrive(int drive) noexcept;

// Both give 0, or -1; EEXIST tells that what _mkdir was to make is there, if only as a file.
RVPLATFORM_API int _chdir(const char* path) noexcept;
RVPLATFORM_API int _mkdir(const char* path) noexcept;

// Takes a path apart: the drive's letter with its colon, the levels with the last separator, the
// last level up to its last point, and the rest with that point. Put together, the parts are the
// path. Gives 0; ERANGE when a part does not find room, which counts its NUL, and all parts are
// then empty.
RVPLATFORM_API int _splitpath_s(const char* path, char* drive, std::size_t drive_room,
                                char* directory, std::size_t directory_room, char* name,
                                std::size_t name_room, char* extension,
                                std::size_t extension_room) noexcept;

namespace rv {

// Makes the directory of a native path, not empty, with every level that is missing. Gives
// ERROR_SUCCESS, or ERROR_ALREADY_EXISTS where it was there; ERROR_DIRECTORY where something else
// has the name, ERROR_PATH_NOT_FOUND where a level is no directory. Levels that could be made stay.
[[nodiscard]] DWORD Make_Directories(char* path) noexcept;

}  // namespace rv
