// What the system knows of a file that is not open.
#pragma once

#include "../export.h"
#include "types.h"

inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;

// Counts 100 nanoseconds since the beginning of 1601, UTC.
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct WIN32_FILE_ATTRIBUTE_DATA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
};

enum GET_FILEEX_INFO_LEVELS { GetFileExInfoStandard };

// Stores the WIN32_FILE_ATTRIBUTE_DATA of the file `path` (see path.h), or of what a link leads to:
// FILE_ATTRIBUTE_DIRECTORY or FILE_ATTRIBUTE_NORMAL, the time of its last change in place of all
// times, and its length. FALSE on failure, with an error as of CreateFileA. Any thread.
[[nodiscard]] RVPLATFORM_API BOOL GetFileAttributesExA(LPCSTR path, GET_FILEEX_INFO_LEVELS level,
                                                       LPVOID data) noexcept;
