// Whether windows are shown and enabled, and which one has the focus.
#pragma once

#include "../export.h"
#include "window.h"

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int SW_RESTORE = 9;

inline constexpr UINT WM_SETFOCUS = 0x7;   // WPARAM: the window that had it
inline constexpr UINT WM_KILLFOCUS = 0x8;  // WPARAM: the window that has it now
inline constexpr UINT WM_ENABLE = 0xA;     // WPARAM: whether it is enabled now

// Whether the window is shown, and all that it is inside of; minimised ones are. Any thread for
// windows at the top. FALSE for what is no window.
[[nodiscard]] RVPLATFORM_API BOOL IsWindowVisible(HWND window) noexcept;

// Hides, shows, minimises or restores a window. Of one at the top, of any process: whatever shows
// it makes it active, but for SW_MINIMIZE, and SW_SHOW leaves a minimised window minimised; any
// thread. A child is hidden or shown; when it or one inside of it had the focus and it is hidden,
// its parent gets that.
//
// Gives whether it was shown before, whatever it is inside of; FALSE with ERROR_INVALID_PARAMETER
// for another command, with ERROR_INVALID_WINDOW_HANDLE for what is no window.
RVPLATFORM_API BOOL ShowWindow(HWND window, int command) noexcept;

// Whether input may go to the window; what it is inside of does not count. FALSE for what is no
// window of this thread.
[[nodiscard]] RVPLATFORM_API BOOL IsWindowEnabled(HWND window) noexcept;

// Enables or disables a window, which gets WM_ENABLE when that is a change. One that had the focus
// and is disabled leaves it to no window. Gives whether it was disabled before; FALSE with
// ERROR_INVALID_WINDOW_HANDLE when it is no window of this thread.
RVPLATFORM_API BOOL EnableWindow(HWND window, BOOL enable) noexcept;

// The window of this thread that has the focus; null for none.
[[nodiscard]] RVPLATFORM_API HWND GetFocus() noexcept;

// Gives the focus to a window, or to none for null. A window refuses it that is disabled,
// minimised, a hidden child or about to end, or that is inside of such a one. The window that had
// it gets WM_KILLFOCUS, the other one WM_SETFOCUS, if it has it still.
//
// Gives the window that had it, which may be null; null also when it was refused, or with
// ERROR_INVALID_WINDOW_HANDLE for what is no window of this thread.
RVPLATFORM_API HWND SetFocus(HWND window) noexcept;

namespace rv {

class Window;

// Gives the focus to `to`, or to none where that refuses it, when the window or one inside of it
// has it.
void Leave_Focus(Window& window, Window* to) noexcept;

// Gives the focus to a window that became active, unless one inside of it has it.
void Enter_Focus(Window& window) noexcept;

// Nobody has the focus any more that the window had; nobody is told.
void Forget_Focus(const Window& window) noexcept;

}  // namespace rv
