// The class "Static": a label, whose text is broken into lines.
#pragma once

#include "types.h"

// Low bits of the style: where the text stands.
inline constexpr DWORD SS_LEFT = 0x0;
inline constexpr DWORD SS_CENTER = 0x1;
inline constexpr DWORD SS_RIGHT = 0x2;

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_Static() noexcept;

}  // namespace rv
