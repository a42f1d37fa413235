// The class "#32770": a window of controls, which knows the id of its default button.
//
// Before it is told one, that is IDOK.
#pragma once

#include "types.h"

inline constexpr int IDOK = 1;

inline constexpr WORD DC_HASDEFID = 0x534B;

// Answers the id in the low word and DC_HASDEFID in the high one. Where it was told 0: the id of
// the first of its buttons that looks the default, or 0 for none.
inline constexpr UINT DM_GETDEFID = 0x400;

// WPARAM: the new id. The push button that has it looks the default from now on, and no other.
// Answers TRUE.
inline constexpr UINT DM_SETDEFID = 0x401;

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_Dialog() noexcept;

}  // namespace rv
