// Windows in memory.
//
// No display server stands behind them. A message is handed to the window's class at once, inside
// SendMessageA.
//
// A window belongs to the thread that made it. To other threads its handle names nothing, and it
// ends with its thread at the latest. A handle is never used again for another window.
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

inline constexpr DWORD WS_POPUP = 0x80000000;
inline constexpr DWORD WS_CHILD = 0x40000000;

// Makes a window of a built-in class.
//
// `class_name`: as the class's header tells it; case counts.
// `style`: WS_CHILD, which needs a parent, or not, and the class's own bits.
// `parent`: null, or the window with which the new one ends. Without WS_CHILD it is an owner: where
// it is a child itself, its next ancestor that is none stands for it.
// The extended style, text, place, id, module and parameter have no effect.
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

// Whether it is a window of this thread.
[[nodiscard]] RVPLATFORM_API BOOL IsWindow(HWND window) noexcept;

// What the window's class answers: 0 for a message that it does not know. 0 with
// ERROR_INVALID_WINDOW_HANDLE when it is no window of this thread.
RVPLATFORM_API LRESULT SendMessageA(HWND window, UINT message, WPARAM first,
                                    LPARAM second) noexcept;
