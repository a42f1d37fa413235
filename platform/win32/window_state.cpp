#include "window_state.h"

#include <utility>

#include "error.h"
#include "top_window.h"
#include "window_object.h"
#include "window_registry.h"
#include "window_update.h"

namespace {

using rv::Window;

thread_local Window* t_Focus = nullptr;

bool Is_In(const Window* window, const Window& outer) noexcept {
    while (window && window != &outer)
        window = window->Is_Child() ? window->Parent() : nullptr;
    return window != nullptr;
}

bool Takes_Focus(const Window& window) noexcept {
    const Window* at = &window;
    const auto refuses = [&at] { return at->Is_Ending() || (at->m_Style & WS_DISABLED) != 0; };
    for (; !refuses() && at->Is_Child(); at = at->Parent()) {
        if (!(at->m_Style & WS_VISIBLE)) return false;
    }
    return !refuses() && !IsIconic(at->Handle());
}

// Gives the handle of the window that had it.
HWND Move_Focus(Window* window) noexcept {
    Window* const before = std::exchange(t_Focus, window);
    HWND const previous = rv::Handle_Of(before);
    if (before == window) return previous;
    HWND const next = rv::Handle_Of(window);
    if (before) rv::Send(*before, WM_KILLFOCUS, reinterpret_cast<WPARAM>(next), 0);
    // What it was told may have moved the focus on, or ended the window.
    if (t_Focus && t_Focus->Handle() == next)
        rv::Send(*t_Focus, WM_SETFOCUS, reinterpret_cast<WPARAM>(previous), 0);
    return previous;
}

void Show_Child(Window& window, bool show) noexcept {
    window.m_Style = show ? window.m_Style | WS_VISIBLE : window.m_Style & ~WS_VISIBLE;
    if (show)
        rv::Invalidate_Tree(window);
    else
        rv::Leave_Focus(window, window.Parent());
}

BOOL Show_Top(HWND handle, const rv::window_registry::Showing& showing) noexcept {
    const auto was_visible = rv::window_registry::Show(handle, showing);
    if (!was_visible) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    Window* const window = rv::Find_Window(handle);
    if (window) {
        const rv::WindowInUse use(*window);
        window->m_Style &= ~WS_VISIBLE;
        if (showing.visible) window->m_Style |= WS_VISIBLE;
        if (showing.visible && !was_visible.value_or(false)) rv::Invalidate_Tree(*window);
        if (!showing.visible) rv::Leave_Focus(*window, window->Parent());
        if (showing.activate) rv::Enter_Focus(*window);
    }
    return was_visible.value_or(false);
}

// What a command does to a window at the top; nothing for one that there is not.
std::optional<rv::window_registry::Showing> Showing_Of(int command) noexcept {
    using rv::window_registry::Showing;
    switch (command) {
        case SW_HIDE:
            return Showing{.visible = false, .iconic = {}, .activate = false};
        case SW_SHOW:
            return Showing{.visible = true, .iconic = {}, .activate = true};
        case SW_SHOWNORMAL:
        case SW_RESTORE:
            return Showing{.visible = true, .iconic = false, .activate = true};
        case SW_MINIMIZE:
            return Showing{.visible = true, .iconic = true, .activate = false};
        default:
            return std::nullopt;
    }
}

}  // namespace

void rv::Leave_Focus(Window& window, Window* to) noexcept {
    if (Is_In(t_Focus, window)) Move_Focus(to && Takes_Focus(*to) ? to : nullptr);
}

void rv::Enter_Focus(Window& window) noexcept {
    if (!Is_In(t_Focus, window) && Takes_Focus(window)) Move_Focus(&window);
}

void rv::Forget_Focus(const Window& window) noexcept {
    if (t_Focus == &window) t_Focus = nullptr;
}

BOOL IsWindowVisible(HWND window) noexcept {
    const Window* at = rv::Find_Window(window);
    for (; at && at->Is_Child(); at = at->Parent()) {
        if (!(at->m_Style & WS_VISIBLE)) return FALSE;
    }
    const auto state = rv::window_registry::Get_State(at ? at->Handle() : window);
    return state ? state->visible : at && (at->m_Style & WS_VISIBLE) != 0;
}

BOOL ShowWindow(HWND window, int command) noexcept {
    const auto showing = Showing_Of(command);
    if (!showing) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    Window* const found = rv::Find_Window(window);
    if (!found || !found->Is_Child()) return Show_Top(window, *showing);
    const bool was_visible = (found->m_Style & WS_VISIBLE) != 0;
    if (was_visible != showing->visible) Show_Child(*found, showing->visible);
    return was_visible;
}

BOOL IsWindowEnabled(HWND window) noexcept {
    const Window* const found = rv::Window_Of(window);
    return found && !(found->m_Style & WS_DISABLED);
}

BOOL EnableWindow(HWND window, BOOL enable) noexcept {
    Window* const found = rv::Window_Of(window);
    if (!found) return FALSE;
    const bool was_disabled = (found->m_Style & WS_DISABLED) != 0;
    if (was_disabled != !enable) {
        const rv::WindowInUse use(*found);
        found->m_Style ^= WS_DISABLED;
        if (!enable && t_Focus == found) Move_Focus(nullptr);
        rv::Send(*found, WM_ENABLE, enable != FALSE, 0);
    }
    return was_disabled;
}

HWND GetFocus() noexcept {
    return rv::Handle_Of(t_Focus);
}

HWND SetFocus(HWND window) noexcept {
    Window* const found = window ? rv::Window_Of(window) : nullptr;
    if (window && (!found || (found != t_Focus && !Takes_Focus(*found)))) return nullptr;
    return Move_Focus(found);
}
