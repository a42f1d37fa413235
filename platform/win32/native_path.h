// Callers' paths, made ready for the system's calls.
#pragma once

#include <string_view>

#include "../heap.h"
#include "types.h"

namespace rv {

// Stores the native form of `path` in `native` and gives ERROR_SUCCESS; a relative path stays one.
// Null counts as empty, and the empty path stays empty. Fails with ERROR_PATH_NOT_FOUND for a drive
// that does not exist and ERROR_NOT_ENOUGH_MEMORY; `native` is then as it was.
[[nodiscard]] DWORD Native_Path(const char* path, HeapText& native) noexcept;

// Whether `path`, not null, is its own native form.
[[nodiscard]] bool Is_Native_Path(const char* path) noexcept;

// The drive letter that a path begins with, in upper case; NUL for none.
[[nodiscard]] char Drive_Of(std::string_view path) noexcept;

// Which error a file is that the system does not find: ERROR_FILE_NOT_FOUND when its directory
// exists, else ERROR_PATH_NOT_FOUND. Cuts the last level off `native`.
[[nodiscard]] DWORD Missing_File_Error(char* native) noexcept;

}  // namespace rv
