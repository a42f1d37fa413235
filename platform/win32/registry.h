// The registry: keys in a tree, each with values by name.
//
// It is one text file, as registry_text.h tells: the one that the environment variable
// RVUTILS_REGISTRY names (see path.h), else rvutils/registry.reg in the directory XDG_CONFIG_HOME,
// else in .config in HOME. A file that is not there is an empty registry; it is made, with the
// directories above it, by the first change. It belongs to the user, so what other systems keep for
// the whole machine is the user's here, too.
//
// Each change is on the disk when the call returns: another file takes the place of the old one,
// which a process that is killed, or a disk that is full, leaves as it was. Processes take turns
// by a lock on the file's name and ".lock" behind it, so none loses what another changes. What was
// changed in an editor is there at the next call. A file that is damaged makes every call fail with
// ERROR_REGISTRY_CORRUPT, is told of in one line of standard error, and is not touched.
//
// The roots are the three below; classes stand in Software\Classes of the local machine, and only
// there. Names do not regard the case of ASCII letters, and keep that of their making. A key's is 1
// to 255 bytes without backslash, a value's up to 16383, the empty one included, and neither has
// line ends. There are up to 512 levels.
//
// The functions give ERROR_SUCCESS or an error: besides those named with each, ERROR_INVALID_HANDLE
// for a root that is none or null, ERROR_ACCESS_DENIED for a handle that was not opened for it (or
// what the system says), ERROR_INVALID_PARAMETER for a name that cannot be, ERROR_KEY_DELETED for a
// handle whose key is gone, ERROR_PATH_NOT_FOUND where no environment variable tells the place,
// ERROR_FILE_TOO_LARGE beyond 256 MiB, ERROR_NOT_ENOUGH_MEMORY. Changes that fail have changed
// nothing. Any thread.
#pragma once

#include <cstdint>

#include "../export.h"
#include "file_attributes.h"
#include "types.h"

using HKEY = struct HKEY__*;
using REGSAM = DWORD;
using LSTATUS = LONG;

#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(INT32_MIN)))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(INT32_MIN + 1)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(INT32_MIN + 2)))

// Which data a value has. A text has its NUL with it.
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_MULTI_SZ = 7;

// What a handle is opened for; other bits do not count.
inline constexpr REGSAM KEY_QUERY_VALUE = 1;
inline constexpr REGSAM KEY_SET_VALUE = 2;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 4;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 8;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

struct SECURITY_ATTRIBUTES;

// Opens the key at `path` below a key; null or the empty path is that key once more. `options`: 0.
// `*result` is to be closed with RegCloseKey. ERROR_FILE_NOT_FOUND when there is no such key.
[[nodiscard]] RVPLATFORM_API LSTATUS RegOpenKeyExA(HKEY key, LPCSTR path, DWORD options,
                                                   REGSAM access, HKEY* result) noexcept;

// The same; a key that is missing is made, with those above it. `*disposition`, unless it is null,
// tells whether it was. `reserved`, `options`: 0. `kind`, `security`: null.
[[nodiscard]] RVPLATFORM_API LSTATUS RegCreateKeyExA(HKEY key, LPCSTR path, DWORD reserved,
                                                     LPSTR kind, DWORD options, REGSAM access,
                                                     SECURITY_ATTRIBUTES* security, HKEY* result,
                                                     DWORD* disposition) noexcept;

// Ends a handle; a root stays.
RVPLATFORM_API LSTATUS RegCloseKey(HKEY key) noexcept;

// Counts a key's subkeys and values. The pointers to the counts may be null, the others must be.
RVPLATFORM_API LSTATUS RegQueryInfoKeyA(HKEY key, LPSTR kind, DWORD* kind_length, DWORD* reserved,
                                        DWORD* keys, DWORD* longest_key, DWORD* longest_kind,
                                        DWORD* values, DWORD* longest_name, DWORD* longest_data,
                                        DWORD* security, FILETIME* time) noexcept;

// Stores the name of a subkey and its length, in the order of their lower case. `*length` is the
// room in `name`, with the NUL. The others are null. ERROR_NO_MORE_ITEMS behind the last one,
// ERROR_MORE_DATA when the room does not do.
[[nodiscard]] RVPLATFORM_API LSTATUS RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, DWORD* length,
                                                   DWORD* reserved, LPSTR kind, DWORD* kind_length,
                                                   FILETIME* time) noexcept;

// Takes away a key without subkeys, the values with it. ERROR_ACCESS_DENIED when it has subkeys,
// ERROR_FILE_NOT_FOUND when there is no such key.
RVPLATFORM_API LSTATUS RegDeleteKeyA(HKEY key, LPCSTR path) noexcept;

// Stores type and data of a value; null is the empty name. `*size` is the room in `data`, and then
// the data's size; without `data` only that is told. ERROR_MORE_DATA when the room does not do,
// ERROR_FILE_NOT_FOUND when there is no such value. `reserved`: null. `type` may be null, and
// `size`, where there is no data.
[[nodiscard]] RVPLATFORM_API LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, DWORD* reserved,
                                                      DWORD* type, BYTE* data,
                                                      DWORD* size) noexcept;

// Makes or replaces a value. The data is kept as it is: the size of a text includes its NUL.
// `reserved`: 0.
[[nodiscard]] RVPLATFORM_API LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved,
                                                    DWORD type, const BYTE* data,
                                                    DWORD size) noexcept;

// ERROR_FILE_NOT_FOUND when there is no such value.
RVPLATFORM_API LSTATUS RegDeleteValueA(HKEY key, LPCSTR name) noexcept;
