// What windows hold: styles, procedures, ids and texts, and how they are found by them.
#pragma once

#include "../export.h"
#include "window.h"

inline constexpr int GWLP_WNDPROC = -4;
inline constexpr int GWLP_ID = -12;
inline constexpr int GWL_STYLE = -16;
inline constexpr int GWL_EXSTYLE = -20;
inline constexpr int GWLP_USERDATA = -21;

inline constexpr UINT WM_SETTEXT = 0xC;  // LPARAM: the text
inline constexpr UINT WM_GETTEXT = 0xD;  // WPARAM: room; LPARAM: where to
inline constexpr UINT WM_GETTEXTLENGTH = 0xE;

struct STYLESTRUCT {
    DWORD styleOld;
    DWORD styleNew;
};

inline constexpr UINT WM_STYLECHANGED = 0x7D;  // LPARAM: STYLESTRUCT*; after GWL_STYLE was set

// One of the values above. 0 on failure: ERROR_INVALID_WINDOW_HANDLE for what is no window of this
// thread; ERROR_INVALID_INDEX for another value.
[[nodiscard]] RVPLATFORM_API LONG_PTR GetWindowLongPtrA(HWND window, int index) noexcept;

// Sets one of the values above and gives the one before. The style is taken as it is; a child
// stays one. 0 on failure, as above.
RVPLATFORM_API LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value) noexcept;

// The same, of the values that have 32 bits.
[[nodiscard]] RVPLATFORM_API LONG GetWindowLongA(HWND window, int index) noexcept;
RVPLATFORM_API LONG SetWindowLongA(HWND window, int index, LONG value) noexcept;

// Copies the name of a window's class, as the class was registered, to `buffer` of `room` bytes,
// cut to fit, with a NUL. Gives its length without that; 0 with ERROR_INVALID_WINDOW_HANDLE for
// what is no window of this thread, with ERROR_INSUFFICIENT_BUFFER for no room.
RVPLATFORM_API int GetClassNameA(HWND window, LPSTR buffer, int room) noexcept;

// The parent of a child, the owner of a window with WS_POPUP. Null for none, or with
// ERROR_INVALID_WINDOW_HANDLE for what is no window of this thread.
[[nodiscard]] RVPLATFORM_API HWND GetParent(HWND window) noexcept;

// The first of a window's own children that has the id; null with ERROR_CONTROL_ID_NOT_FOUND, or
// with ERROR_INVALID_WINDOW_HANDLE for what is no window of this thread.
[[nodiscard]] RVPLATFORM_API HWND GetDlgItem(HWND window, int id) noexcept;

// The id of a window; 0 with ERROR_INVALID_WINDOW_HANDLE for what is no window of this thread.
[[nodiscard]] RVPLATFORM_API int GetDlgCtrlID(HWND window) noexcept;

// These go through the messages above. Of the text, as much as `room` bytes hold is copied, with a
// NUL, and its length given; a null text is the empty one.
RVPLATFORM_API int GetWindowTextA(HWND window, LPSTR buffer, int room) noexcept;
[[nodiscard]] RVPLATFORM_API int GetWindowTextLengthA(HWND window) noexcept;
RVPLATFORM_API BOOL SetWindowTextA(HWND window, LPCSTR text) noexcept;
