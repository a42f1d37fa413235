// Icons and cursors, and images out of files.
//
// One of a resource is shared: each call gives the same handle, which lives as long as the module,
// and ending it does nothing. One of a file is the caller's own. An image is not stretched: of
// those in a file, the one serves whose width is nearest to 32. Any thread.
#pragma once

#include "../export.h"
#include "bitmap.h"
#include "module.h"
#include "types.h"

struct ICONINFO {
    BOOL fIcon;
    DWORD xHotspot;
    DWORD yHotspot;
    HBITMAP hbmMask;
    HBITMAP hbmColor;
};

inline constexpr UINT IMAGE_BITMAP = 0;
inline constexpr UINT IMAGE_ICON = 1;
inline constexpr UINT IMAGE_CURSOR = 2;
inline constexpr UINT LR_LOADFROMFILE = 0x10;
inline constexpr UINT LR_DEFAULTSIZE = 0x40;

// Null on failure, as LoadBitmapA.
[[nodiscard]] RVPLATFORM_API HICON LoadIconA(HINSTANCE module, LPCSTR name) noexcept;
[[nodiscard]] RVPLATFORM_API HCURSOR LoadCursorA(HINSTANCE module, LPCSTR name) noexcept;

// FALSE with ERROR_INVALID_HANDLE for what is neither an icon nor a cursor.
RVPLATFORM_API BOOL DestroyIcon(HICON icon) noexcept;
RVPLATFORM_API BOOL DestroyCursor(HCURSOR cursor) noexcept;

// Stores what an icon or a cursor is, with two new bitmaps, the caller's own. The hot spot of an
// icon is its middle. FALSE on failure, with ERROR_NOT_ENOUGH_MEMORY or as above.
RVPLATFORM_API BOOL GetIconInfo(HICON icon, ICONINFO* info) noexcept;

// Makes a bitmap, an icon or a cursor, as `type` says, of the file `path` (see path.h). `module` is
// null, width and height are 0, and `flags` hold LR_LOADFROMFILE and perhaps LR_DEFAULTSIZE. Null
// on failure: ERROR_INVALID_DATA for a file that is none or is damaged, or has more than 256 MiB;
// ERROR_INVALID_PARAMETER for other arguments; what CreateFileA and ReadFile tell;
// ERROR_NOT_ENOUGH_MEMORY.
[[nodiscard]] RVPLATFORM_API HANDLE LoadImageA(HINSTANCE module, LPCSTR path, UINT type, int width,
                                               int height, UINT flags) noexcept;
