// The class "Static": a label, whose text is broken into lines.
#pragma once

#include "types.h"

// Low bits of the style: where the text stands.
inline constexpr DWORD SS_LEFT = 0x0;
inline constexpr DWORD SS_CENTER = 0x1;
inline constexpr DWORD SS_RIGHT = 0x2;

inline constexpr DWORD SS_NOPREFIX = 0x80;  // '&' marks no key

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_Static() noexcept;

}  // namespace rv
