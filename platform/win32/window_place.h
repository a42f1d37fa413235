// Where windows are, in pixels.
//
// A window's inside is what its frame leaves: none by default, one pixel for WS_BORDER, two for
// WS_EX_CLIENTEDGE, three and a title bar for WS_CAPTION; and what scroll bars leave of that.
#pragma once

#include "../export.h"
#include "window.h"

inline constexpr UINT SWP_NOSIZE = 0x1;
inline constexpr UINT SWP_NOMOVE = 0x2;
inline constexpr UINT SWP_NOZORDER = 0x4;
inline constexpr UINT SWP_NOACTIVATE = 0x10;

inline constexpr UINT WM_SIZE = 0x5;  // LPARAM: width and height of the inside

// The inside, whose corner is at 0, 0. FALSE with ERROR_INVALID_WINDOW_HANDLE for what is no window
// of this thread, with the record as it was; so all of these.
RVPLATFORM_API BOOL GetClientRect(HWND window, RECT* place) noexcept;

// The window with its frame, on the screen.
RVPLATFORM_API BOOL GetWindowRect(HWND window, RECT* place) noexcept;

// Moves a window to a place that is told as CreateWindowExA tells it. When its inside has another
// size afterwards, it gets WM_SIZE and is to be painted anew.
RVPLATFORM_API BOOL MoveWindow(HWND window, int x, int y, int width, int height,
                               BOOL repaint) noexcept;

// The same, but for what the flags say. The order of windows stays as it is.
RVPLATFORM_API BOOL SetWindowPos(HWND window, HWND behind, int x, int y, int width, int height,
                                 UINT flags) noexcept;

namespace rv {

class Window;

inline constexpr int kCaptionHeight = 20;  // with the line below it

// The inside, whose corner is at 0, 0.
[[nodiscard]] RECT Inside_Of(const Window& window) noexcept;

// The inside where the window's place is told; it may be less than nothing.
[[nodiscard]] RECT Inner_Place_Of(const Window& window) noexcept;

// Tells the window's inside, and has it painted anew, where it has another size than before.
void Tell_Size(Window& window, const RECT& before) noexcept;

// The corner of the inside, on the screen.
[[nodiscard]] POINT Corner_On_Screen(const Window& window) noexcept;

}  // namespace rv
