// The class "Button": push buttons, check boxes, radio buttons, frames of groups, and buttons that
// their parent paints.
//
// A click, by BM_CLICK, the mouse or the space key, is told to the parent as BN_CLICKED, after the
// button has taken the focus and an automatic one has changed its check.
#pragma once

#include "bitmap.h"
#include "window.h"

// Low four bits of the style.
inline constexpr DWORD BS_PUSHBUTTON = 0x0;
inline constexpr DWORD BS_DEFPUSHBUTTON = 0x1;
inline constexpr DWORD BS_CHECKBOX = 0x2;
inline constexpr DWORD BS_AUTOCHECKBOX = 0x3;
inline constexpr DWORD BS_RADIOBUTTON = 0x4;
inline constexpr DWORD BS_GROUPBOX = 0x7;
inline constexpr DWORD BS_AUTORADIOBUTTON = 0x9;
inline constexpr DWORD BS_OWNERDRAW = 0xB;

inline constexpr int BST_UNCHECKED = 0;
inline constexpr int BST_CHECKED = 1;

inline constexpr UINT BM_GETCHECK = 0xF0;
inline constexpr UINT BM_SETCHECK = 0xF1;  // WPARAM: BST_CHECKED or BST_UNCHECKED
inline constexpr UINT BM_SETSTYLE = 0xF4;  // WPARAM: the low four bits; LPARAM: whether to repaint
inline constexpr UINT BM_CLICK = 0xF5;

inline constexpr WORD BN_CLICKED = 0;

// To the parent of a button that it paints. WPARAM: its id; LPARAM: DRAWITEMSTRUCT*.
inline constexpr UINT WM_DRAWITEM = 0x2B;

inline constexpr UINT ODT_BUTTON = 4;
inline constexpr UINT ODA_DRAWENTIRE = 1;
inline constexpr UINT ODS_SELECTED = 0x1;
inline constexpr UINT ODS_DISABLED = 0x4;
inline constexpr UINT ODS_FOCUS = 0x10;

struct DRAWITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemAction;
    UINT itemState;
    HWND hwndItem;
    HDC hDC;
    RECT rcItem;
    UINT_PTR itemData;
};

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_Button() noexcept;

}  // namespace rv
