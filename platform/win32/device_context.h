// Drawing on windows and measuring texts.
//
// A context is used by the thread that got it; one whose window has ended draws nowhere. Texts are
// in the built-in font: what is valid UTF-8 counts as that, any other byte as one of Latin-1.
#pragma once

#include "../export.h"
#include "brush.h"
#include "image_list.h"
#include "window.h"

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};

inline constexpr UINT WM_ERASEBKGND = 0x14;  // WPARAM: HDC; answers whether it was done

// To the parent of a control that is about to be painted. WPARAM: HDC, whose colours it can set;
// LPARAM: the control. Answers the brush of the background.
inline constexpr UINT WM_CTLCOLORMSGBOX = 0x132;  // the first of them; of no control here
inline constexpr UINT WM_CTLCOLOREDIT = 0x133;
inline constexpr UINT WM_CTLCOLORLISTBOX = 0x134;
inline constexpr UINT WM_CTLCOLORBTN = 0x135;
inline constexpr UINT WM_CTLCOLORDLG = 0x136;  // to the dialog itself
inline constexpr UINT WM_CTLCOLORSTATIC = 0x138;

inline constexpr int TRANSPARENT = 1;
inline constexpr int OPAQUE = 2;

inline constexpr UINT ETO_OPAQUE = 0x2;
inline constexpr UINT ETO_CLIPPED = 0x4;

// The two lines of an edge, from the outside in.
inline constexpr UINT BDR_RAISEDOUTER = 0x1;
inline constexpr UINT BDR_SUNKENOUTER = 0x2;
inline constexpr UINT BDR_RAISEDINNER = 0x4;
inline constexpr UINT BDR_SUNKENINNER = 0x8;
inline constexpr UINT EDGE_RAISED = BDR_RAISEDOUTER | BDR_RAISEDINNER;
inline constexpr UINT EDGE_SUNKEN = BDR_SUNKENOUTER | BDR_SUNKENINNER;
inline constexpr UINT EDGE_ETCHED = BDR_SUNKENOUTER | BDR_RAISEDINNER;

inline constexpr UINT BF_LEFT = 0x1;
inline constexpr UINT BF_TOP = 0x2;
inline constexpr UINT BF_RIGHT = 0x4;
inline constexpr UINT BF_BOTTOM = 0x8;
inline constexpr UINT BF_RECT = 0xF;

// A context for the inside of a window; for null, one to measure with. Null on failure:
// ERROR_INVALID_WINDOW_HANDLE; ERROR_NOT_ENOUGH_MEMORY.
[[nodiscard]] RVPLATFORM_API HDC GetDC(HWND window) noexcept;
// 1, or 0 for what is no context.
RVPLATFORM_API int ReleaseDC(HWND window, HDC context) noexcept;

// For the answer to WM_PAINT: a context for what has to be painted, which is taken as painted, and
// whose background has been asked for by WM_ERASEBKGND where that is due. Null on failure, as
// GetDC.
RVPLATFORM_API HDC BeginPaint(HWND window, PAINTSTRUCT* painting) noexcept;
// Always TRUE.
RVPLATFORM_API BOOL EndPaint(HWND window, const PAINTSTRUCT* painting) noexcept;

// Of texts and of what is behind them: black and white in a new context. Give the one before,
// CLR_INVALID for what is no context.
RVPLATFORM_API COLORREF SetTextColor(HDC context, COLORREF color) noexcept;
RVPLATFORM_API COLORREF SetBkColor(HDC context, COLORREF color) noexcept;
[[nodiscard]] RVPLATFORM_API COLORREF GetTextColor(HDC context) noexcept;
[[nodiscard]] RVPLATFORM_API COLORREF GetBkColor(HDC context) noexcept;
// Whether texts have something behind them: OPAQUE, as in a new context, or TRANSPARENT. Gives the
// one before, 0 for what is no context.
RVPLATFORM_API int SetBkMode(HDC context, int mode) noexcept;

// CLR_INVALID outside of the window.
[[nodiscard]] RVPLATFORM_API COLORREF GetPixel(HDC context, int x, int y) noexcept;

// 0 for what is no context or no brush.
RVPLATFORM_API int FillRect(HDC context, const RECT* place, HBRUSH brush) noexcept;

// Draws `count` bytes of text, in one line, from its upper left corner. With ETO_OPAQUE, `place` is
// filled first; with ETO_CLIPPED, nothing is drawn outside of it. `text` may be null for none;
// `gaps` is null. FALSE for what is no context.
RVPLATFORM_API BOOL ExtTextOutA(HDC context, int x, int y, UINT options, const RECT* place,
                                LPCSTR text, UINT count, const INT* gaps) noexcept;

// Draws two lines inside of `place`, on the sides that `flags` say. FALSE for what is no context.
RVPLATFORM_API BOOL DrawEdge(HDC context, RECT* place, UINT edge, UINT flags) noexcept;

// How large a text of `count` bytes is. FALSE for what is no context.
RVPLATFORM_API BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int count, SIZE* size) noexcept;

// Draws one of a list of images; where they are transparent, nothing. `style` has no effect. FALSE
// for what is no context or no list.
RVPLATFORM_API BOOL ImageList_Draw(HIMAGELIST list, int image, HDC context, int x, int y,
                                   UINT style) noexcept;

// A measure of the system in pixels: SM_CXVSCROLL and SM_CYHSCROLL, how wide or high scroll bars
// are. 0 for any other.
inline constexpr int SM_CXVSCROLL = 2;
inline constexpr int SM_CYHSCROLL = 3;
[[nodiscard]] RVPLATFORM_API int GetSystemMetrics(int index) noexcept;

namespace rv {

class Window;

// What every window answers to WM_ERASEBKGND and WM_CTLCOLOR....
LRESULT Default_Of_Painting(Window& window, UINT message, WPARAM first) noexcept;

}  // namespace rv
