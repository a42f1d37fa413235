// The class "ListBox": a list of texts, one of which is chosen by the user.
//
// It makes itself lower, so that its inside shows whole rows, but for LBS_NOINTEGRALHEIGHT.
// Rows are counted from 0. A row that there is not, and a text that there is no memory for, are
// answered by LB_ERR and LB_ERRSPACE.
#pragma once

#include "types.h"

inline constexpr DWORD LBS_NOTIFY = 0x1;  // the parent hears LBN_SELCHANGE when the user chooses
inline constexpr DWORD LBS_SORT = 0x2;    // LB_ADDSTRING goes by the order of texts, case apart
inline constexpr DWORD LBS_NOINTEGRALHEIGHT = 0x100;

inline constexpr int LB_ERR = -1;
inline constexpr int LB_ERRSPACE = -2;

inline constexpr UINT LB_ADDSTRING = 0x180;     // LPARAM: the text; answers its row
inline constexpr UINT LB_INSERTSTRING = 0x181;  // WPARAM: the row, -1 for behind all; the same
inline constexpr UINT LB_DELETESTRING = 0x182;  // WPARAM: the row; answers how many are left
inline constexpr UINT LB_RESETCONTENT = 0x184;  // the extent stays
inline constexpr UINT LB_SETCURSEL = 0x186;     // WPARAM: the row, -1 for none; answers it
inline constexpr UINT LB_GETCURSEL = 0x188;     // answers the row, LB_ERR for none
inline constexpr UINT LB_GETTEXT = 0x189;       // WPARAM: the row; LPARAM: room enough
inline constexpr UINT LB_GETTEXTLEN = 0x18A;    // WPARAM: the row
inline constexpr UINT LB_GETCOUNT = 0x18B;
inline constexpr UINT LB_GETHORIZONTALEXTENT = 0x193;  // the width to scroll over, 0 at first
inline constexpr UINT LB_SETHORIZONTALEXTENT = 0x194;  // WPARAM: the width
inline constexpr UINT LB_GETITEMRECT = 0x198;          // WPARAM: the row; LPARAM: RECT*

inline constexpr WORD LBN_SELCHANGE = 1;

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_List_Box() noexcept;

}  // namespace rv
