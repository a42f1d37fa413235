// Windows in memory: their making and end, and messages.
//
// No display server stands behind them. A message is handed to the window's procedure at once,
// inside SendMessageA; a procedure lets no exception out.
//
// A window belongs to the thread that made it, to which alone its handle means anything; it ends
// with its thread at the latest, then without a message. A handle is never used again for another
// window.
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
using LONG_PTR = std::intptr_t;
using HWND = struct HWND__*;
using HMENU = struct HMENU__*;

struct POINT {
    LONG x;
    LONG y;
};

struct SIZE {
    LONG cx;
    LONG cy;
};

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
inline constexpr DWORD WS_DISABLED = 0x08000000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;   // a title bar and a frame of three pixels
inline constexpr DWORD WS_HSCROLL = 0x00100000;   // a list box has scroll bars
inline constexpr DWORD WS_VSCROLL = 0x00200000;   // where it needs them
inline constexpr DWORD WS_BORDER = 0x00800000;    // a frame of one pixel
inline constexpr DWORD WS_EX_CLIENTEDGE = 0x200;  // a sunken frame of two pixels
// Kept; they are for the system's own dialogs and frames, of which there are none.
inline constexpr DWORD WS_TABSTOP = 0x00010000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_EX_CONTROLPARENT = 0x00010000;

// What a new window is made of, for WM_NCCREATE and WM_CREATE.
struct CREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
};

// What every notification begins with.
struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};

inline constexpr UINT WM_CREATE = 0x1;   // LPARAM: CREATESTRUCTA*; -1 refuses
inline constexpr UINT WM_DESTROY = 0x2;  // the window and its children are still there
inline constexpr UINT WM_NOTIFY = 0x4E;  // to the parent; LPARAM: NMHDR*, of which more may follow
inline constexpr UINT WM_NCCREATE = 0x81;   // as WM_CREATE; 0 refuses
inline constexpr UINT WM_NCDESTROY = 0x82;  // the last one; no child is there any more
inline constexpr UINT WM_COMMAND = 0x111;  // to the parent; WPARAM: id and code; LPARAM: the window

// Of any whole numbers, whatever their sign.
constexpr WORD LOWORD(auto value) noexcept {
    return static_cast<WORD>(value);
}
constexpr WORD HIWORD(auto value) noexcept {
    return static_cast<WORD>(static_cast<DWORD>(value) >> 16);
}
constexpr LONG MAKELONG(auto low, auto high) noexcept {
    return static_cast<LONG>(DWORD{LOWORD(high)} << 16 | LOWORD(low));
}
constexpr WPARAM MAKEWPARAM(auto low, auto high) noexcept {
    return static_cast<DWORD>(MAKELONG(low, high));
}
constexpr LPARAM MAKELPARAM(auto low, auto high) noexcept {
    return static_cast<DWORD>(MAKELONG(low, high));
}

// Adds a class of windows to those of the process, which keeps it. Only the name, which is copied
// and in which case does not count, the procedure and the brush of the background have an effect.
// Gives a number that is not 0. 0 on failure: ERROR_CLASS_ALREADY_EXISTS; ERROR_INVALID_PARAMETER
// without a procedure, or with a name that is empty or longer than 255 characters;
// ERROR_NOT_ENOUGH_MEMORY. Any thread.
RVPLATFORM_API ATOM RegisterClassA(const WNDCLASSA* window_class) noexcept;

// What a procedure does with messages that it does not know: texts are kept, a background is
// painted in the brush of the class, colours of controls are those of the system. Gives 0 for any
// other message.
RVPLATFORM_API LRESULT DefWindowProcA(HWND window, UINT message, WPARAM first,
                                      LPARAM second) noexcept;

// Hands a message on to a procedure that another one took the place of. 0 for null.
RVPLATFORM_API LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM first,
                                       LPARAM second) noexcept;

// Makes a window of a built-in class, or of one of the application's.
//
// `class_name`: case does not count.
// `style`: WS_CHILD, which needs a parent, or not; WS_VISIBLE, which shows it; WS_DISABLED; frames;
// and the class's own bits.
// `parent`: null, or the window with which the new one ends. Without WS_CHILD it is an owner: where
// it is a child itself, its next ancestor that is none stands for it.
// `x` to `height`: in pixels, with the frame; of a child, from the corner of its parent's inside.
// `id`: a number, of a child. `module` and `parameter` go to the messages alone.
//
// The window gets WM_NCCREATE, whose default sets the text, and WM_CREATE, each of which can refuse
// it: it then ends and null is the result.
//
// Null on failure: ERROR_CANNOT_FIND_WND_CLASS; ERROR_INVALID_WINDOW_HANDLE for a parent that is
// no window of this thread, or is about to end; ERROR_TLW_WITH_WSCHILD for a child without a
// parent; ERROR_NOT_ENOUGH_MEMORY.
[[nodiscard]] RVPLATFORM_API HWND CreateWindowExA(DWORD extended_style, LPCSTR class_name,
                                                  LPCSTR text, DWORD style, int x, int y, int width,
                                                  int height, HWND parent, HMENU id,
                                                  HINSTANCE module, LPVOID parameter) noexcept;

// Ends what a window owns, then the window: it and those inside of it get WM_DESTROY, parents
// first, and WM_NCDESTROY, children first. A window that is told its end already goes on ending.
// FALSE with ERROR_INVALID_WINDOW_HANDLE when it is no window of this thread.
RVPLATFORM_API BOOL DestroyWindow(HWND window) noexcept;

// Whether it is a window of this thread, or one at the top.
[[nodiscard]] RVPLATFORM_API BOOL IsWindow(HWND window) noexcept;

// What the window's procedure answers. 0 with ERROR_INVALID_WINDOW_HANDLE when it is no window of
// this thread.
RVPLATFORM_API LRESULT SendMessageA(HWND window, UINT message, WPARAM first,
                                    LPARAM second) noexcept;
