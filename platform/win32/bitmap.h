// Bitmaps, as pixels in memory.
//
// A handle is never used again for another object; one that has ended is refused with
// ERROR_INVALID_HANDLE. Any thread.
#pragma once

#include "../export.h"
#include "module.h"
#include "types.h"

using HGDIOBJ = void*;
using HBITMAP = struct HBITMAP__*;
using HDC = struct HDC__*;

struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    LPVOID bmBits;
};

struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};

struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};

inline constexpr DWORD BI_RGB = 0;
inline constexpr UINT DIB_RGB_COLORS = 0;

// Makes a bitmap, the caller's own, of a resource by its number (see MAKEINTRESOURCEA). Null on
// failure: ERROR_RESOURCE_NAME_NOT_FOUND, also for the module null, which has the system's own
// bitmaps elsewhere and none here; ERROR_NOT_ENOUGH_MEMORY.
[[nodiscard]] RVPLATFORM_API HBITMAP LoadBitmapA(HINSTANCE module, LPCSTR name) noexcept;

// Ends a bitmap or a brush. FALSE with ERROR_INVALID_HANDLE when it is neither.
RVPLATFORM_API BOOL DeleteObject(HGDIOBJ object) noexcept;

// Stores the BITMAP of a bitmap, without a pointer to its bits, if `size` does. Gives that size,
// also for a null buffer; 0 on failure, with ERROR_INVALID_PARAMETER for a smaller one.
RVPLATFORM_API int GetObjectA(HGDIOBJ object, int size, LPVOID buffer) noexcept;

// A context in memory, the caller's own, to read bitmaps through. `like` is null. Null without
// memory.
[[nodiscard]] RVPLATFORM_API HDC CreateCompatibleDC(HDC like) noexcept;
// FALSE with ERROR_INVALID_HANDLE when it is no context.
RVPLATFORM_API BOOL DeleteDC(HDC context) noexcept;

// Copies a whole bitmap, 32 bits a pixel, blue in the low byte, and gives its height. The header
// asks for that: the bitmap's width, its height, or minus that for rows from the top down, one
// plane, 32 bits, BI_RGB. `start` is 0, `lines` the height, `usage` DIB_RGB_COLORS. 0 on failure,
// with ERROR_INVALID_PARAMETER for another wish.
RVPLATFORM_API int GetDIBits(HDC context, HBITMAP bitmap, UINT start, UINT lines, LPVOID bits,
                             BITMAPINFO* info, UINT usage) noexcept;
