// Rows of images of one size, with transparent places.
//
// A handle is never used again for another list. Any thread.
#pragma once

#include "../export.h"
#include "brush.h"
#include "icon.h"
#include "types.h"

using HIMAGELIST = struct HIMAGELIST__*;

inline constexpr UINT ILC_COLOR32 = 0x20;
inline constexpr UINT ILD_NORMAL = 0;

// Makes a list without images. `flags` and `grow` have no effect. Null on failure:
// ERROR_INVALID_PARAMETER for a size that is not 1 to 32767; ERROR_NOT_ENOUGH_MEMORY.
[[nodiscard]] RVPLATFORM_API HIMAGELIST ImageList_Create(int width, int height, UINT flags,
                                                         int initial, int grow) noexcept;

// Makes a list of the images that stand side by side in a bitmap resource (see LoadBitmapA), each
// `width` wide; what is left over at the right counts for nothing. Pixels of the colour `mask` are
// transparent. `type` is IMAGE_BITMAP, `flags` 0, `grow` without effect. Null on failure, as
// LoadBitmapA and ImageList_Create.
[[nodiscard]] RVPLATFORM_API HIMAGELIST ImageList_LoadImageA(HINSTANCE module, LPCSTR name,
                                                             int width, int grow, COLORREF mask,
                                                             UINT type, UINT flags) noexcept;

// FALSE for what is no list.
RVPLATFORM_API BOOL ImageList_Destroy(HIMAGELIST list) noexcept;

// Stores how large the images are. FALSE for what is no list.
RVPLATFORM_API BOOL ImageList_GetIconSize(HIMAGELIST list, int* width, int* height) noexcept;

// 0 for what is no list.
[[nodiscard]] RVPLATFORM_API int ImageList_GetImageCount(HIMAGELIST list) noexcept;
