#include "device_context.h"

#include <utility>

#include "device_context_object.h"
#include "edge.h"
#include "error.h"
#include "image_list_object.h"
#include "rectangle.h"
#include "scroll_bars.h"
#include "text_metrics.h"
#include "window_class.h"
#include "window_object.h"
#include "window_place.h"

namespace {

using rv::DeviceContext;
using rv::Window;

HDC Make_Context(HWND window, const RECT& clip) noexcept {
    std::unique_ptr<rv::GdiObject> context(new (std::nothrow) DeviceContext(window, clip));
    return static_cast<HDC>(rv::GdiObjects().Add(std::move(context)));
}

// A context that is drawn on, for as long as one of these lives.
class Drawing {
public:
    explicit Drawing(HDC context) noexcept : m_Context(m_Objects.Find<DeviceContext>(context)) {}

    explicit operator bool() const noexcept { return m_Context != nullptr; }
    DeviceContext& Context() const noexcept { return *m_Context; }
    rv::GdiObjects& Objects() noexcept { return m_Objects; }

    // Null where there is nothing to draw on.
    rv::Surface* Surface() const noexcept {
        Window* const window = m_Context->m_Window ? rv::Find_Window(m_Context->m_Window) : nullptr;
        if (!window) return nullptr;
        const RECT inside = rv::Inside_Of(*window);
        return window->m_Surface.Set_Size(inside.right, inside.bottom) ? &window->m_Surface
                                                                       : nullptr;
    }

    void Fill(const RECT& place, COLORREF color) const noexcept {
        if (rv::Surface* const surface = Surface())
            surface->Fill(place, rv::Swapped(color), m_Context->m_Clip);
    }

private:
    rv::GdiObjects m_Objects;
    DeviceContext* const m_Context;
};

// Stores a value in a context and gives the one before.
template <class Value>
Value Exchange(HDC context, Value DeviceContext::*member, Value value, Value failure) noexcept {
    const Drawing drawing(context);
    return drawing ? std::exchange(drawing.Context().*member, value) : failure;
}

template <class Value>
Value Read(HDC context, Value DeviceContext::*member, Value failure) noexcept {
    const Drawing drawing(context);
    return drawing ? drawing.Context().*member : failure;
}

// The brush of the class, or none.
bool Erase(const Window& window, HDC context) noexcept {
    HBRUSH const brush = window.m_Class->background;
    const RECT inside = rv::Inside_Of(window);
    return brush && FillRect(context, &inside, brush) != 0;
}

HBRUSH Set_Default_Colors(HDC context, int background) noexcept {
    SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(context, GetSysColor(background));
    return GetSysColorBrush(background);
}

}  // namespace

LRESULT rv::Default_Of_Painting(Window& window, UINT message, WPARAM first) noexcept {
    HDC const context = reinterpret_cast<HDC>(first);
    switch (message) {
        case WM_ERASEBKGND:
            return Erase(window, context);
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
            return reinterpret_cast<LRESULT>(Set_Default_Colors(context, COLOR_WINDOW));
        default:
            return reinterpret_cast<LRESULT>(Set_Default_Colors(context, COLOR_BTNFACE));
    }
}

HDC GetDC(HWND window) noexcept {
    if (!window) return Make_Context(nullptr, {});
    const Window* const found = rv::Window_Of(window);
    return found ? Make_Context(window, rv::Inside_Of(*found)) : nullptr;
}

int ReleaseDC(HWND, HDC context) noexcept {
    rv::GdiObjects objects;
    auto* const found = objects.Find<DeviceContext>(context);
    if (found) objects.End(*found);
    return found != nullptr;
}

HDC BeginPaint(HWND window, PAINTSTRUCT* painting) noexcept {
    *painting = {};
    Window* const found = rv::Window_Of(window);
    if (!found) return nullptr;
    const rv::WindowInUse use(*found);
    painting->rcPaint = std::exchange(found->m_Update, {});
    painting->hdc = Make_Context(window, painting->rcPaint);
    if (painting->hdc && std::exchange(found->m_Erase, false)) {
        painting->fErase =
            !rv::Send(*found, WM_ERASEBKGND, reinterpret_cast<WPARAM>(painting->hdc), 0);
    }
    return painting->hdc;
}

BOOL EndPaint(HWND window, const PAINTSTRUCT* painting) noexcept {
    ReleaseDC(window, painting->hdc);
    return TRUE;
}

COLORREF SetTextColor(HDC context, COLORREF color) noexcept {
    return Exchange(context, &DeviceContext::m_TextColor, color, CLR_INVALID);
}

COLORREF SetBkColor(HDC context, COLORREF color) noexcept {
    return Exchange(context, &DeviceContext::m_BackColor, color, CLR_INVALID);
}

COLORREF GetTextColor(HDC context) noexcept {
    return Read(context, &DeviceContext::m_TextColor, CLR_INVALID);
}

COLORREF GetBkColor(HDC context) noexcept {
    return Read(context, &DeviceContext::m_BackColor, CLR_INVALID);
}

int SetBkMode(HDC context, int mode) noexcept {
    return Exchange(context, &DeviceContext::m_BackMode, mode, 0);
}

COLORREF GetPixel(HDC context, int x, int y) noexcept {
    const Drawing drawing(context);
    const rv::Surface* const surface = drawing ? drawing.Surface() : nullptr;
    if (!surface || !rv::Contains(surface->Place(), x, y)) return CLR_INVALID;
    return rv::Swapped(surface->Row(y)[x]);
}

int FillRect(HDC context, const RECT* place, HBRUSH brush) noexcept {
    const COLORREF color = rv::Color_Of(brush);
    const Drawing drawing(context);
    if (!drawing || color == CLR_INVALID) return 0;
    drawing.Fill(*place, color);
    return 1;
}

BOOL ExtTextOutA(HDC context, int x, int y, UINT options, const RECT* place, LPCSTR text,
                 UINT count, const INT*) noexcept {
    const Drawing drawing(context);
    if (!drawing) return FALSE;
    const DeviceContext& target = drawing.Context();
    if (place && (options & ETO_OPAQUE)) drawing.Fill(*place, target.m_BackColor);
    rv::Surface* const surface = drawing.Surface();
    if (!surface || !text || count == 0) return TRUE;
    const std::string_view drawn(text, count);
    RECT clip = target.m_Clip;
    if (place && (options & ETO_CLIPPED)) clip = rv::Intersection(clip, *place);
    if (target.m_BackMode == OPAQUE && !(options & ETO_OPAQUE)) {
        surface->Fill({x, y, x + rv::Width_Of(drawn), y + rv::kLineHeight},
                      rv::Swapped(target.m_BackColor), clip);
    }
    surface->Draw_Text(x, y, drawn, rv::Swapped(target.m_TextColor), clip);
    return TRUE;
}

BOOL DrawEdge(HDC context, RECT* place, UINT edge, UINT flags) noexcept {
    const Drawing drawing(context);
    if (!drawing) return FALSE;
    if (rv::Surface* const surface = drawing.Surface())
        rv::Draw_Edge(*surface, *place, edge, flags, drawing.Context().m_Clip);
    return TRUE;
}

BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int count, SIZE* size) noexcept {
    if (!Drawing(context) || count < 0) return FALSE;
    const std::string_view measured(text, static_cast<std::size_t>(count));
    *size = {rv::Width_Of(measured), rv::kLineHeight};
    return TRUE;
}

BOOL ImageList_Draw(HIMAGELIST list, int image, HDC context, int x, int y, UINT) noexcept {
    Drawing drawing(context);
    const auto* const images =
        drawing ? drawing.Objects().Find<rv::ImageListObject>(list) : nullptr;
    if (!images) return FALSE;
    if (rv::Surface* const surface = drawing.Surface())
        surface->Draw_Image(x, y, *images, image, drawing.Context().m_Clip);
    return TRUE;
}

int GetSystemMetrics(int index) noexcept {
    return index == SM_CXVSCROLL || index == SM_CYHSCROLL ? rv::kScrollBar : 0;
}
