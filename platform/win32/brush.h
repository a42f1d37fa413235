// Colours, and brushes that fill with one. Any thread.
#pragma once

#include "../export.h"
#include "bitmap.h"
#include "types.h"

using COLORREF = DWORD;  // 0x00BBGGRR

inline constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

constexpr COLORREF RGB(auto red, auto green, auto blue) noexcept {
    return static_cast<BYTE>(red) | DWORD{static_cast<BYTE>(green)} << 8 |
           DWORD{static_cast<BYTE>(blue)} << 16;
}

// Colours of the system.
inline constexpr int COLOR_ACTIVECAPTION = 2;
inline constexpr int COLOR_WINDOW = 5;
inline constexpr int COLOR_WINDOWFRAME = 6;
inline constexpr int COLOR_WINDOWTEXT = 8;
inline constexpr int COLOR_CAPTIONTEXT = 9;
inline constexpr int COLOR_HIGHLIGHT = 13;
inline constexpr int COLOR_HIGHLIGHTTEXT = 14;
inline constexpr int COLOR_BTNFACE = 15;
inline constexpr int COLOR_BTNSHADOW = 16;
inline constexpr int COLOR_GRAYTEXT = 17;
inline constexpr int COLOR_BTNTEXT = 18;
inline constexpr int COLOR_BTNHIGHLIGHT = 20;
inline constexpr int COLOR_3DDKSHADOW = 21;
inline constexpr int COLOR_3DLIGHT = 22;

// Black for a number that stands for no colour.
[[nodiscard]] RVPLATFORM_API DWORD GetSysColor(int index) noexcept;

// A brush of such a colour, which is nobody's to end; null for a number that stands for none.
[[nodiscard]] RVPLATFORM_API HBRUSH GetSysColorBrush(int index) noexcept;

// A brush of the caller's own, for DeleteObject. Null without memory.
[[nodiscard]] RVPLATFORM_API HBRUSH CreateSolidBrush(COLORREF color) noexcept;

namespace rv {

// CLR_INVALID for what is no brush.
[[nodiscard]] COLORREF Color_Of(HBRUSH brush) noexcept;

}  // namespace rv
