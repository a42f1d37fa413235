#include "top_window.h"

#include "error.h"
#include "window_object.h"
#include "window_registry.h"
#include "window_state.h"

namespace {

HWND Refuse(DWORD error) noexcept {
    SetLastError(error);
    return nullptr;
}

}  // namespace

HWND FindWindowA(LPCSTR class_name, LPCSTR) noexcept {
    HWND const found = rv::window_registry::Find(class_name ? class_name : "");
    return found ? found : Refuse(ERROR_FILE_NOT_FOUND);
}

HWND GetLastActivePopup(HWND window) noexcept {
    HWND const popup = rv::window_registry::Last_Active_Popup(window);
    return popup ? popup : Refuse(ERROR_INVALID_WINDOW_HANDLE);
}

BOOL IsIconic(HWND window) noexcept {
    const auto state = rv::window_registry::Get_State(window);
    return state && state->iconic;
}

BOOL SetForegroundWindow(HWND window) noexcept {
    const bool done = rv::window_registry::Activate(window);
    if (!done) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    if (rv::Window* const found = rv::Find_Window(window)) rv::Enter_Focus(*found);
    return done;
}

HWND GetForegroundWindow() noexcept {
    return rv::window_registry::Foreground();
}

HWND GetTopWindow(HWND) noexcept {
    return GetForegroundWindow();
}
