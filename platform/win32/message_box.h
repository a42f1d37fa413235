// Messages that wait for the user.
#pragma once

#include "../export.h"
#include "window.h"

inline constexpr UINT MB_OK = 0;
inline constexpr UINT MB_ICONINFORMATION = 0x40;

namespace rv {

// Takes the place of the box; called by the thread that shows it. Must not throw.
using MessageBoxHook = void (*)(LPCSTR text, LPCSTR title, UINT kind);

// Installs `hook`, null for the line to standard error, and gives back the one before. Any thread.
RVPLATFORM_API MessageBoxHook Set_Message_Box_Hook(MessageBoxHook hook) noexcept;

}  // namespace rv

// Nobody sits before this system: title and text go to one line of standard error, or to a hook,
// and the user has agreed. `text`, `title`: not null. `kind`: one OK button, and an icon or none;
// nothing is made of it here, as of `owner`. Always 1, the OK button. Any thread.
RVPLATFORM_API int MessageBoxA(HWND owner, LPCSTR text, LPCSTR title, UINT kind) noexcept;
