// Windows without WS_CHILD, of all processes of the user. Any thread.
#pragma once

#include "../export.h"
#include "window.h"

// A window of the class, in which case does not count: of several, the one that was active last.
// `title` is to be null, for any. Null with ERROR_FILE_NOT_FOUND when there is none.
[[nodiscard]] RVPLATFORM_API HWND FindWindowA(LPCSTR class_name, LPCSTR title) noexcept;

// The one that was active last of a window and all that it owns, at whatever remove. The window
// itself when it has an owner. Null with ERROR_INVALID_WINDOW_HANDLE when it is not at the top.
[[nodiscard]] RVPLATFORM_API HWND GetLastActivePopup(HWND window) noexcept;

// Whether the window is minimised. FALSE for what is no window at the top.
[[nodiscard]] RVPLATFORM_API BOOL IsIconic(HWND window) noexcept;

// Makes a window active, so that it has the focus, and remembers it as the foreground. FALSE with
// ERROR_INVALID_WINDOW_HANDLE when it is not at the top.
RVPLATFORM_API BOOL SetForegroundWindow(HWND window) noexcept;

// The window that was made active last, unless it has been hidden, minimised or ended since: null.
[[nodiscard]] RVPLATFORM_API HWND GetForegroundWindow() noexcept;

// Which of the windows at the top is before all others, as far as that is known: the foreground.
// `window`: null.
[[nodiscard]] RVPLATFORM_API HWND GetTopWindow(HWND window) noexcept;
