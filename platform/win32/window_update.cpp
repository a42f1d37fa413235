#include "window_update.h"

#include "rectangle.h"
#include "window_object.h"
#include "window_place.h"

namespace {

using rv::Window;

// As far as this thread knows, without a look at what all processes share.
bool Is_Shown(const Window& window) noexcept {
    const Window* at = window.Has_Ended() ? nullptr : &window;
    while (at && (at->m_Style & WS_VISIBLE) && at->Is_Child())
        at = at->Parent();
    return at && (at->m_Style & WS_VISIBLE);
}

void Add(Window& window, const RECT& part, bool erase) noexcept {
    if (rv::Contains(window.m_Update, part) && (window.m_Erase || !erase)) return;
    if (!Is_Shown(window)) return;
    window.m_Update = rv::Union(window.m_Update, part);
    window.m_Erase |= erase;
}

}  // namespace

void rv::Invalidate(Window& window, bool erase) noexcept {
    Add(window, Inside_Of(window), erase);
}

void rv::Invalidate_Tree(Window& root) noexcept {
    for (Window* at = &root; at; at = at->Behind(root))
        Invalidate(*at, true);
}

BOOL InvalidateRect(HWND window, const RECT* part, BOOL erase) noexcept {
    Window* const found = rv::Window_Of(window);
    if (!found) return FALSE;
    const RECT inside = rv::Inside_Of(*found);
    const RECT added = part ? rv::Intersection(*part, inside) : inside;
    if (!rv::Is_Empty(added)) Add(*found, added, erase != FALSE);
    return TRUE;
}

BOOL ValidateRect(HWND window, const RECT* part) noexcept {
    Window* const found = rv::Window_Of(window);
    if (!found) return FALSE;
    if (!part || rv::Contains(*part, found->m_Update)) {
        found->m_Update = {};
        found->m_Erase = false;
    }
    return TRUE;
}

BOOL GetUpdateRect(HWND window, RECT* part, BOOL) noexcept {
    const Window* const found = rv::Window_Of(window);
    if (found && part) *part = found->m_Update;
    return found && !rv::Is_Empty(found->m_Update);
}

BOOL UpdateWindow(HWND window) noexcept {
    Window* const found = rv::Window_Of(window);
    if (found && !rv::Is_Empty(found->m_Update)) rv::Send(*found, WM_PAINT, 0, 0);
    return found != nullptr;
}
