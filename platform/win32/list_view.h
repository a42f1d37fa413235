// The class "SysListView32": rows of texts in columns, under a header.
//
// Rows and columns are counted from 0. Every row has data, a number that programs know it by, a
// state and an image. The header, of the class WC_HEADERA, is there as soon as the style shows
// columns (LVS_REPORT) or there is a column; its notifications are handed on to the parent, but for
// HDN_ITEMCHANGEDA.
//
// While LVM_SORTITEMS runs, messages that insert, delete or sort rows are refused.
#pragma once

#include "image_list.h"
#include "window.h"

#define WC_LISTVIEWA "SysListView32"

// Low two bits of the style: how rows are shown.
inline constexpr DWORD LVS_ICON = 0x0;
inline constexpr DWORD LVS_REPORT = 0x1;
inline constexpr DWORD LVS_SMALLICON = 0x2;
inline constexpr DWORD LVS_LIST = 0x3;
inline constexpr DWORD LVS_TYPEMASK = 0x3;

inline constexpr DWORD LVS_SINGLESEL = 0x4;          // one row can be selected at a time
inline constexpr DWORD LVS_SHOWSELALWAYS = 0x8;      // the selection is seen without the focus
inline constexpr DWORD LVS_SHAREIMAGELISTS = 0x40;   // else its image lists end with the window
inline constexpr DWORD LVS_NOCOLUMNHEADER = 0x4000;  // the header is hidden
inline constexpr DWORD LVS_NOSORTHEADER = 0x8000;    // it cannot be clicked

inline constexpr DWORD LVS_EX_FULLROWSELECT = 0x20;  // the whole of a selected row is marked

inline constexpr UINT LVIF_TEXT = 0x1;
inline constexpr UINT LVIF_IMAGE = 0x2;
inline constexpr UINT LVIF_PARAM = 0x4;
inline constexpr UINT LVIF_STATE = 0x8;

inline constexpr UINT LVIS_FOCUSED = 0x1;  // of one row at a time
inline constexpr UINT LVIS_SELECTED = 0x2;

struct LVITEMA {
    UINT mask;
    int iItem;
    int iSubItem;
    UINT state;
    UINT stateMask;
    LPSTR pszText;
    int cchTextMax;
    int iImage;
    LPARAM lParam;
    int iIndent;
    int iGroupId;
    UINT cColumns;
    UINT* puColumns;
    int* piColFmt;
    int iGroup;
};

inline constexpr UINT LVCF_FMT = 0x1;
inline constexpr UINT LVCF_WIDTH = 0x2;
inline constexpr UINT LVCF_TEXT = 0x4;
inline constexpr UINT LVCF_SUBITEM = 0x8;

inline constexpr int LVCFMT_LEFT = 0x0;
inline constexpr int LVCFMT_RIGHT = 0x1;
inline constexpr int LVCFMT_CENTER = 0x2;
inline constexpr int LVCFMT_JUSTIFYMASK = 0x3;

struct LVCOLUMNA {
    UINT mask;
    int fmt;
    int cx;
    LPSTR pszText;
    int cchTextMax;
    int iSubItem;
    int iImage;
    int iOrder;
    int cxMin;
    int cxDefault;
    int cxIdeal;
};

inline constexpr UINT LVFI_PARAM = 0x1;

struct LVFINDINFOA {
    UINT flags;
    LPCSTR psz;
    LPARAM lParam;
    POINT pt;
    UINT vkDirection;
};

struct NMLISTVIEW {
    NMHDR hdr;
    int iItem;
    int iSubItem;
    UINT uNewState;
    UINT uOldState;
    UINT uChanged;
    POINT ptAction;
    LPARAM lParam;  // the data of the row
};

// Less than 0, 0 or more, as the row with the first data goes before, with or behind the other.
using PFNLVCOMPARE = int(CALLBACK*)(LPARAM first, LPARAM second, LPARAM parameter);

inline constexpr int LVSIL_NORMAL = 0;
inline constexpr int LVSIL_SMALL = 1;
inline constexpr int LVSIL_STATE = 2;

inline constexpr UINT LVNI_FOCUSED = 0x1;
inline constexpr UINT LVNI_SELECTED = 0x2;

// WPARAM: the kind. The small ones go to the header, too. LPARAM: HIMAGELIST; answers the one
// before.
inline constexpr UINT LVM_SETIMAGELIST = 0x1003;
inline constexpr UINT LVM_GETITEMCOUNT = 0x1004;
// LPARAM: LVITEMA*, whose mask says what. Answer whether it was done. Data and image are those of
// the row, with sub-item 0. A text that is read is cut to fit.
inline constexpr UINT LVM_GETITEMA = 0x1005;
inline constexpr UINT LVM_SETITEMA = 0x1006;
// The same, with sub-item 0; a row too great goes behind all. Answers its place, or -1.
inline constexpr UINT LVM_INSERTITEMA = 0x1007;
inline constexpr UINT LVM_DELETEITEM = 0x1008;  // WPARAM: the row; answers whether it was done
inline constexpr UINT LVM_DELETEALLITEMS = 0x1009;
// WPARAM: the row to start behind, or -1; LPARAM: what it has to be. Answers the row, or -1.
inline constexpr UINT LVM_GETNEXTITEM = 0x100C;
// WPARAM: as above; LPARAM: LVFINDINFOA*, with LVFI_PARAM. Answers the row, or -1. Look-ups between
// which no row comes, goes or gets other data take no longer for more rows.
inline constexpr UINT LVM_FINDITEMA = 0x100D;
inline constexpr UINT LVM_GETITEMRECT = 0x100E;  // WPARAM: the row; LPARAM: RECT*
inline constexpr UINT LVM_GETCOLUMNA = 0x1019;   // WPARAM: the column; LPARAM: LVCOLUMNA*
// WPARAM: where to, behind all for a number too great; LPARAM: LVCOLUMNA*. The first column is
// always left-aligned. Answers the place, or -1.
inline constexpr UINT LVM_INSERTCOLUMNA = 0x101B;
inline constexpr UINT LVM_DELETECOLUMN = 0x101C;    // WPARAM: the column
inline constexpr UINT LVM_GETCOLUMNWIDTH = 0x101D;  // WPARAM: the column; 0 for none
inline constexpr UINT LVM_SETCOLUMNWIDTH = 0x101E;  // WPARAM: the column; LPARAM: the width
inline constexpr UINT LVM_GETHEADER = 0x101F;       // answers HWND
// WPARAM: the row, -1 for all; LPARAM: LVITEMA*, of which the state counts, as far as its mask
// goes. The parent hears LVN_ITEMCHANGING for every row, and LVN_ITEMCHANGED where that was a
// change.
inline constexpr UINT LVM_SETITEMSTATE = 0x102B;
inline constexpr UINT LVM_GETITEMSTATE = 0x102C;  // WPARAM: the row; LPARAM: the bits asked for
// WPARAM: the row; LPARAM: LVITEMA*, with the column. The length of what was read, or whether it
// was set.
inline constexpr UINT LVM_GETITEMTEXTA = 0x102D;
inline constexpr UINT LVM_SETITEMTEXTA = 0x102E;
// WPARAM: a parameter for the order; LPARAM: PFNLVCOMPARE. Rows that go together stay as they were;
// an order that contradicts itself gives some order. FALSE without memory.
inline constexpr UINT LVM_SORTITEMS = 0x1030;
inline constexpr UINT LVM_GETSELECTEDCOUNT = 0x1032;
// WPARAM: which bits, 0 for all; LPARAM: the bits. Answers those before.
inline constexpr UINT LVM_SETEXTENDEDLISTVIEWSTYLE = 0x1036;
inline constexpr UINT LVM_GETEXTENDEDLISTVIEWSTYLE = 0x1037;

inline constexpr UINT NM_CLICK = static_cast<UINT>(-2);
inline constexpr UINT LVN_ITEMCHANGING =
    static_cast<UINT>(-100);  // an answer that is not 0 refuses
inline constexpr UINT LVN_ITEMCHANGED = static_cast<UINT>(-101);
inline constexpr UINT LVN_INSERTITEM = static_cast<UINT>(-102);
inline constexpr UINT LVN_DELETEITEM = static_cast<UINT>(-103);
// An answer that is not 0 keeps back LVN_DELETEITEM for each of the rows.
inline constexpr UINT LVN_DELETEALLITEMS = static_cast<UINT>(-104);
inline constexpr UINT LVN_COLUMNCLICK = static_cast<UINT>(-108);  // NMLISTVIEW: row -1, the column

namespace rv {

class Window;

// For the window system: null without memory.
[[nodiscard]] Window* Make_List_View() noexcept;

}  // namespace rv
