// What of windows has to be painted.
//
// It gathers up in each window that is shown, as one rectangle, and is painted when UpdateWindow
// asks for it, or a picture is taken.
#pragma once

#include "../export.h"
#include "window.h"

inline constexpr UINT WM_PAINT = 0xF;  // BeginPaint gives what to paint

// Adds a part of a window's inside, the whole of it for null, to what has to be painted; `erase`:
// with its background. FALSE with ERROR_INVALID_WINDOW_HANDLE for what is no window of this thread;
// so all of these.
RVPLATFORM_API BOOL InvalidateRect(HWND window, const RECT* part, BOOL erase) noexcept;

// Takes the whole inside, for null, or what such a part covers, out of it again.
RVPLATFORM_API BOOL ValidateRect(HWND window, const RECT* part) noexcept;

// Whether there is something to paint, and what, where `part` is not null. `erase` is FALSE.
[[nodiscard]] RVPLATFORM_API BOOL GetUpdateRect(HWND window, RECT* part, BOOL erase) noexcept;

// Sends WM_PAINT when there is something to paint.
RVPLATFORM_API BOOL UpdateWindow(HWND window) noexcept;

namespace rv {

class Window;

// InvalidateRect of the whole inside.
void Invalidate(Window& window, bool erase) noexcept;

// The same of a window and all that is inside of it.
void Invalidate_Tree(Window& root) noexcept;

}  // namespace rv
