#include "window_place.h"

#include "error.h"
#include "rectangle.h"
#include "scroll_bars.h"
#include "window_object.h"
#include "window_update.h"

namespace {

using rv::Window;

constexpr int kCaptionFrame = 3;
constexpr int kBorder = 1;
constexpr int kClientEdge = 2;

bool Has_Caption(const Window& window) noexcept {
    return (window.m_Style & WS_CAPTION) == WS_CAPTION;
}

int Frame_Of(const Window& window) noexcept {
    int frame = window.m_ExtendedStyle & WS_EX_CLIENTEDGE ? kClientEdge : 0;
    if (Has_Caption(window))
        frame += kCaptionFrame;
    else if (window.m_Style & WS_BORDER)
        frame += kBorder;
    return frame;
}

void Place(Window& window, const RECT& place) noexcept {
    const RECT before = rv::Inside_Of(window);
    window.m_Place = place;
    rv::Tell_Size(window, before);
}

}  // namespace

RECT rv::Inside_Of(const Window& window) noexcept {
    const RECT inner = Inner_Place_Of(window);
    return {0, 0, std::max(Width_Of(inner), 0), std::max(Height_Of(inner), 0)};
}

RECT rv::Inner_Place_Of(const Window& window) noexcept {
    RECT inner = Shrunk(window.m_Place, Frame_Of(window));
    if (Has_Caption(window)) inner.top += rv::kCaptionHeight;
    if (window.m_ScrollBars.has_vertical) inner.right -= kScrollBar;
    if (window.m_ScrollBars.has_horizontal) inner.bottom -= kScrollBar;
    return inner;
}

void rv::Tell_Size(Window& window, const RECT& before) noexcept {
    const RECT inside = Inside_Of(window);
    if (inside.right == before.right && inside.bottom == before.bottom) return;
    Invalidate(window, true);
    Send(window, WM_SIZE, 0, MAKELPARAM(inside.right, inside.bottom));
}

POINT rv::Corner_On_Screen(const Window& window) noexcept {
    POINT corner = {0, 0};
    for (const Window* at = &window; at; at = at->Is_Child() ? at->Parent() : nullptr) {
        const RECT inner = Inner_Place_Of(*at);
        corner.x += inner.left;
        corner.y += inner.top;
    }
    return corner;
}

BOOL GetClientRect(HWND window, RECT* place) noexcept {
    const Window* const found = rv::Window_Of(window);
    if (found) *place = rv::Inside_Of(*found);
    return found != nullptr;
}

BOOL GetWindowRect(HWND window, RECT* place) noexcept {
    const Window* const found = rv::Window_Of(window);
    if (!found) return FALSE;
    const POINT outside = found->Is_Child() ? rv::Corner_On_Screen(*found->Parent()) : POINT{0, 0};
    *place = rv::Moved(found->m_Place, outside.x, outside.y);
    return TRUE;
}

BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL) noexcept {
    Window* const found = rv::Window_Of(window);
    if (found) Place(*found, {x, y, x + width, y + height});
    return found != nullptr;
}

BOOL SetWindowPos(HWND window, HWND, int x, int y, int width, int height, UINT flags) noexcept {
    Window* const found = rv::Window_Of(window);
    if (!found) return FALSE;
    const RECT& before = found->m_Place;
    if (flags & SWP_NOMOVE) {
        x = before.left;
        y = before.top;
    }
    if (flags & SWP_NOSIZE) {
        width = rv::Width_Of(before);
        height = rv::Height_Of(before);
    }
    return MoveWindow(window, x, y, width, height, TRUE);
}
