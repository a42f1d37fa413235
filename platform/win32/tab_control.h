// The class "SysTabControl32": a row of tabs, one of which is chosen.
//
// Tabs are counted from 0. The first one to be inserted is chosen; a click on another is told to
// the parent as TCN_SELCHANGING, which it can refuse by an answer that is not 0, and TCN_SELCHANGE.
#pragma once

#include "window.h"

#define WC_TABCONTROLA "SysTabControl32"

inline constexpr UINT TCIF_TEXT = 0x1;
inline constexpr UINT TCIF_PARAM = 0x8;

struct TCITEMA {
    UINT mask;  // what of a tab the record tells or asks for
    DWORD dwState;
    DWORD dwStateMask;
    LPSTR pszText;
    int cchTextMax;
    int iImage;
    LPARAM lParam;
};

inline constexpr UINT TCM_GETITEMCOUNT = 0x1304;
// WPARAM: the tab; LPARAM: TCITEMA*. Answer whether it was done; a failure leaves the record alone.
inline constexpr UINT TCM_GETITEMA = 0x1305;
inline constexpr UINT TCM_SETITEMA = 0x1306;
// WPARAM: where to, behind all for a number too great; answers the place, or -1.
inline constexpr UINT TCM_INSERTITEMA = 0x1307;
inline constexpr UINT TCM_GETITEMRECT = 0x130A;  // WPARAM: the tab; LPARAM: RECT*
inline constexpr UINT TCM_GETCURSEL = 0x130B;    // answers the chosen tab, or -1
inline constexpr UINT TCM_SETCURSEL = 0x130C;    // WPARAM: the tab; answers the one before, or -1

inline constexpr UINT TCN_SELCHANGE = static_cast<UINT>(-551);
inline constexpr UINT TCN_SELCHANGING = static_cast<UINT>(-552);

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_Tab_Control() noexcept;

}  // namespace rv
