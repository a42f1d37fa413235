// Folders that the desktop gives to applications.
#pragma once

#include "../export.h"
#include "types.h"
#include "window.h"

struct SECURITY_ATTRIBUTES;

inline constexpr int CSIDL_COMMON_APPDATA = 35;

// Writes the folder for the data of all users to `path` of MAX_PATH bytes, in native form, and
// makes it for `create`: what the environment variable RVUTILS_APPDATA names (see path.h), or
// /var/lib when it is not set or empty. Ordinary users cannot make folders there: whoever sets a
// machine up makes those of its applications, with the rights that they need, or sets the variable
// for all.
//
// FALSE, with an error, when it cannot be made, when its path does not find room, and for any other
// `folder`. `owner` has no meaning. Any thread, as long as none changes the environment meanwhile.
[[nodiscard]] RVPLATFORM_API BOOL SHGetSpecialFolderPathA(HWND owner, LPSTR path, int folder,
                                                          BOOL create) noexcept;

// Makes a directory with every level that is missing. Gives ERROR_SUCCESS, or ERROR_ALREADY_EXISTS
// where it was there; ERROR_BAD_PATHNAME for a relative path, ERROR_DIRECTORY where something else
// has the name, else the error of what failed. Levels that could be made stay. Any thread.
RVPLATFORM_API int SHCreateDirectoryExA(HWND owner, LPCSTR path,
                                        const SECURITY_ATTRIBUTES* security) noexcept;
