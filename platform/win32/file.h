// Files.
//
// Paths are as path.h tells. A failed call leaves its reason with GetLastError. Different handles
// may be used by several threads at once; one handle has one position.
#pragma once

#include "../export.h"
#include "types.h"

inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;

inline constexpr DWORD FILE_SHARE_READ = 1;
inline constexpr DWORD FILE_SHARE_WRITE = 2;
inline constexpr DWORD FILE_SHARE_DELETE = 4;

inline constexpr DWORD CREATE_NEW = 1;         // must not exist
inline constexpr DWORD CREATE_ALWAYS = 2;      // is made, or emptied
inline constexpr DWORD OPEN_EXISTING = 3;      // must exist
inline constexpr DWORD OPEN_ALWAYS = 4;        // is made unless it exists
inline constexpr DWORD TRUNCATE_EXISTING = 5;  // must exist, is emptied; needs GENERIC_WRITE

inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_ATTRIBUTE_TEMPORARY = 0x100;

inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD FILE_CURRENT = 1;
inline constexpr DWORD FILE_END = 2;

struct LARGE_INTEGER {
    LONGLONG QuadPart;
};

// Nothing here looks into these; null is given for them.
struct SECURITY_ATTRIBUTES;
struct OVERLAPPED;

// Opens a regular file or a device. A directory, a pipe and a socket are ERROR_ACCESS_DENIED, and
// opening never waits for anything.
//
// `access`: GENERIC_READ, GENERIC_WRITE, both, or 0 for neither.
// `share` has no effect: this system does not keep others away from an open file.
// `disposition`: CREATE_NEW fails with ERROR_FILE_EXISTS where the name is taken, also by a link
// that leads nowhere.
// `attributes`: FILE_ATTRIBUTE_NORMAL or FILE_ATTRIBUTE_TEMPORARY, or 0. A file made as temporary
// is private to its user, any other gets the rights that the user's mask leaves.
// `security`, `template_file`: null.
//
// Child processes do not inherit the handle. INVALID_HANDLE_VALUE on failure: ERROR_FILE_NOT_FOUND,
// ERROR_PATH_NOT_FOUND when the directory is missing as well (and for an empty path),
// ERROR_INVALID_PARAMETER for bits and values not listed here, ERROR_NOT_ENOUGH_MEMORY with nothing
// changed, or what the system tells. A success leaves the last error alone.
[[nodiscard]] RVPLATFORM_API HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD share,
                                                SECURITY_ATTRIBUTES* security, DWORD disposition,
                                                DWORD attributes, HANDLE template_file) noexcept;

// Reads up to `count` bytes from the position on and stores how many in `*read`: from a regular
// file fewer only at its end, from a device what there is. The bytes got before a failure are
// counted. `overlapped`: null.
[[nodiscard]] RVPLATFORM_API BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD count, DWORD* read,
                                           OVERLAPPED* overlapped) noexcept;

// Writes `count` bytes at the position and stores how many in `*written`, after a failure, too. A
// full disk, a used up quota and the process's limit of a file's size are ERROR_DISK_FULL.
// `overlapped`: null.
[[nodiscard]] RVPLATFORM_API BOOL WriteFile(HANDLE file, LPCVOID buffer, DWORD count,
                                            DWORD* written, OVERLAPPED* overlapped) noexcept;

// Moves the position by `distance` from FILE_BEGIN, FILE_CURRENT or FILE_END and stores the new one
// in `*position`, unless that is null. Behind the end is allowed; before the beginning is
// ERROR_NEGATIVE_SEEK.
RVPLATFORM_API BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* position,
                                     DWORD method) noexcept;

// The length in bytes; 0 for a device.
[[nodiscard]] RVPLATFORM_API BOOL GetFileSizeEx(HANDLE file, LARGE_INTEGER* size) noexcept;

// Deletes a regular file or a link (not what it leads to); anything else is ERROR_ACCESS_DENIED. A
// file that somebody has open goes, too, and is theirs until they close it.
RVPLATFORM_API BOOL DeleteFileA(LPCSTR path) noexcept;
