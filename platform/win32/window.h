// Windows in memory.
//
// No display server stands behind them. A message is handed to the window's class at once, inside
// SendMessageA.
//
// A window belongs to the thread that made it, which alone can send to it and end it; it ends with
// its thread at the latest. A handle is never used again for another window.
//
// Windows without WS_CHILD are at the top: all processes of the user see them, whether they are
// shown, and which of them was active last. Up to 1,024 of them at a time; one beyond that, or made
// where there is no shared memory, is seen by its own thread alone and cannot be shown.
#pragma once

#include "../export.h"
#include "module.h"
#include "types.h"

using WPARAM = UINT_PTR;
using LPARAM = INT_PTR;
using LRESULT = INT_PTR;
using HWND = struct HWND__*;
using HMENU = struct HMENU__*;

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

// What a window of an application's own class does with a message.
using WNDPROC = LRESULT (*)(HWND window, UINT message, WPARAM first, LPARAM second);

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
};

inline constexpr DWORD WS_POPUP = 0x80000000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int SW_RESTORE = 9;

// Adds a class of windows to those of the process, which keeps it. Only the name, which is copied
// and in which case does not count, and the procedure have an effect. Gives a number that is not 0.
// 0 on failure: ERROR_CLASS_ALREADY_EXISTS; ERROR_INVALID_PARAMETER without a procedure, or with a
// name that is empty or longer than 255 characters; ERROR_NOT_ENOUGH_MEMORY. Any thread.
RVPLATFORM_API ATOM RegisterClassA(const WNDCLASSA* window_class) noexcept;

// What a procedure does with messages that it does not know: nothing. Gives 0.
RVPLATFORM_API LRESULT DefWindowProcA(HWND window, UINT message, WPARAM first,
                                      LPARAM second) noexcept;

// Makes a window of a built-in class, or of one of the application's.
//
// `class_name`: case does not count.
// `style`: WS_CHILD, which needs a parent, or not; WS_VISIBLE, which shows a window at the top, and
// the class's own bits.
// `parent`: null, or the window with which the new one ends. Without WS_CHILD it is an owner: where
// it is a child itself, its next ancestor that is none stands for it.
// The extended style, text, place, id, module and parameter have no effect. No message is sent.
//
// Null on failure: ERROR_CANNOT_FIND_WND_CLASS; ERROR_INVALID_WINDOW_HANDLE for a parent that is
// no window of this thread; ERROR_TLW_WITH_WSCHILD for a child without a parent;
// ERROR_NOT_ENOUGH_MEMORY.
[[nodiscard]] RVPLATFORM_API HWND CreateWindowExA(DWORD extended_style, LPCSTR class_name,
                                                  LPCSTR text, DWORD style, int x, int y, int width,
                                                  int height, HWND parent, HMENU id,
                                                  HINSTANCE module, LPVOID parameter) noexcept;

// Ends a window, after those that it is the parent of. FALSE with ERROR_INVALID_WINDOW_HANDLE when
// it is no window of this thread.
RVPLATFORM_API BOOL DestroyWindow(HWND window) noexcept;

// Whether it is a window of this thread, or one at the top.
[[nodiscard]] RVPLATFORM_API BOOL IsWindow(HWND window) noexcept;

// What the window's class answers: 0 for a message that it does not know. 0 with
// ERROR_INVALID_WINDOW_HANDLE when it is no window of this thread.
RVPLATFORM_API LRESULT SendMessageA(HWND window, UINT message, WPARAM first,
                                    LPARAM second) noexcept;

// ---- Windows at the top, of all processes of the user; any thread ----

// A window of the class, in which case does not count: of several, the one that was active last.
// `title` is to be null, for any. Null with ERROR_FILE_NOT_FOUND when there is none.
[[nodiscard]] RVPLATFORM_API HWND FindWindowA(LPCSTR class_name, LPCSTR title) noexcept;

// The one that was active last of a window and all that it owns, at whatever remove. The window
// itself when it has an owner. Null with ERROR_INVALID_WINDOW_HANDLE when it is not at the top.
[[nodiscard]] RVPLATFORM_API HWND GetLastActivePopup(HWND window) noexcept;

// Whether the window is minimised. FALSE for what is no window at the top.
[[nodiscard]] RVPLATFORM_API BOOL IsIconic(HWND window) noexcept;

// Whether the window is shown, minimised or not. FALSE for what is no window at the top.
[[nodiscard]] RVPLATFORM_API BOOL IsWindowVisible(HWND window) noexcept;

// Hides, shows, minimises or restores a window; whatever shows it makes it active, but for
// SW_MINIMIZE. SW_SHOW leaves a minimised window minimised. Gives whether it was visible before;
// FALSE with ERROR_INVALID_PARAMETER for another command, with ERROR_INVALID_WINDOW_HANDLE for what
// is no window at the top.
RVPLATFORM_API BOOL ShowWindow(HWND window, int command) noexcept;

// Makes a window active and remembers it as the foreground. FALSE with ERROR_INVALID_WINDOW_HANDLE
// when it is not at the top.
RVPLATFORM_API BOOL SetForegroundWindow(HWND window) noexcept;

// The window that was made active last, unless it has been hidden, minimised or ended since: null.
[[nodiscard]] RVPLATFORM_API HWND GetForegroundWindow() noexcept;
