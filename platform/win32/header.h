// The class "SysHeader32": the headings of columns.
//
// Items are counted from 0, in the order in which they stand. The user changes a width by dragging
// the right edge of a heading; a click elsewhere on one is told to the parent as HDN_ITEMCLICKA,
// where the style has HDS_BUTTONS.
#pragma once

#include "bitmap.h"
#include "image_list.h"
#include "window.h"

#define WC_HEADERA "SysHeader32"

inline constexpr DWORD HDS_BUTTONS = 0x2;

// What of an item a record tells or asks for.
inline constexpr UINT HDI_WIDTH = 0x1;
inline constexpr UINT HDI_TEXT = 0x2;
inline constexpr UINT HDI_FORMAT = 0x4;
inline constexpr UINT HDI_LPARAM = 0x8;
inline constexpr UINT HDI_IMAGE = 0x20;

inline constexpr int HDF_LEFT = 0x0;
inline constexpr int HDF_RIGHT = 0x1;
inline constexpr int HDF_CENTER = 0x2;
inline constexpr int HDF_JUSTIFYMASK = 0x3;
inline constexpr int HDF_IMAGE = 0x800;
inline constexpr int HDF_BITMAP_ON_RIGHT = 0x1000;
inline constexpr int HDF_STRING = 0x4000;

struct HDITEMA {
    UINT mask;
    int cxy;
    LPSTR pszText;
    HBITMAP hbm;
    int cchTextMax;
    int fmt;
    LPARAM lParam;
    int iImage;  // -1, for one that the parent would supply, is read as 0
    int iOrder;
    UINT type;
    LPVOID pvFilter;
    UINT state;
};

struct NMHEADERA {
    NMHDR hdr;
    int iItem;
    int iButton;
    HDITEMA* pitem;
};

inline constexpr UINT HDM_GETITEMCOUNT = 0x1200;
// LPARAM: HDITEMA*; WPARAM: the item, or where a new one goes, behind all for a number too great.
// Answer whether it was done; the first one, the item's place or -1.
inline constexpr UINT HDM_INSERTITEMA = 0x1201;
inline constexpr UINT HDM_DELETEITEM = 0x1202;
inline constexpr UINT HDM_GETITEMA = 0x1203;
inline constexpr UINT HDM_SETITEMA = 0x1204;
inline constexpr UINT HDM_GETITEMRECT = 0x1207;   // LPARAM: RECT*
inline constexpr UINT HDM_SETIMAGELIST = 0x1208;  // LPARAM: HIMAGELIST; answers the one before
inline constexpr UINT HDM_GETIMAGELIST = 0x1209;

inline constexpr UINT HDN_ITEMCHANGEDA = static_cast<UINT>(-301);
inline constexpr UINT HDN_ITEMCLICKA = static_cast<UINT>(-302);
inline constexpr UINT HDN_ENDTRACKA = static_cast<UINT>(-307);  // the user let go of an edge

namespace rv {

class Window;

inline constexpr int kHeaderHeight = 20;

// For the window system: null without memory.
[[nodiscard]] Window* Make_Header() noexcept;

}  // namespace rv
