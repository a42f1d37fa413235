// The class "Edit": one line of text.
//
// Characters go in where the mark is: at the start of a text that was set, and behind what was
// typed. The backspace key takes the one before the mark. Each change is told to the parent as
// EN_UPDATE and EN_CHANGE.
#pragma once

#include "types.h"

inline constexpr WORD EN_CHANGE = 0x300;
inline constexpr WORD EN_UPDATE = 0x400;

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_Edit() noexcept;

}  // namespace rv
