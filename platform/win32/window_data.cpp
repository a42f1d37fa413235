#include "window_data.h"

#include <utility>

#include "device_context.h"
#include "error.h"
#include "owned_text.h"
#include "window_class.h"
#include "window_object.h"
#include "window_update.h"

namespace {

using rv::Window;

bool Set_Text(Window& window, LPCSTR text) noexcept {
    rv::OwnedText copy = nullptr;
    if (!rv::Copy_Text(text, copy)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    window.m_Text.reset(copy);
    return true;
}

LONG_PTR Refuse(DWORD error) noexcept {
    SetLastError(error);
    return 0;
}

LONG_PTR Value_Of(const Window& window, int index) noexcept {
    switch (index) {
        case GWLP_WNDPROC:
            return reinterpret_cast<LONG_PTR>(window.m_Procedure);
        case GWLP_ID:
            return window.m_Id;
        case GWL_STYLE:
            return static_cast<LONG>(window.m_Style);
        case GWL_EXSTYLE:
            return static_cast<LONG>(window.m_ExtendedStyle);
        case GWLP_USERDATA:
            return window.m_UserData;
        default:
            return Refuse(ERROR_INVALID_INDEX);
    }
}

void Set_Style(Window& window, DWORD style) noexcept {
    STYLESTRUCT change = {std::exchange(window.m_Style, style), style};
    rv::Send(window, WM_STYLECHANGED, static_cast<WPARAM>(GWL_STYLE),
             reinterpret_cast<LPARAM>(&change));
}

void Set_Value(Window& window, int index, LONG_PTR value) noexcept {
    switch (index) {
        case GWLP_WNDPROC:
            window.m_Procedure = reinterpret_cast<WNDPROC>(value);
            break;
        case GWLP_ID:
            window.m_Id = value;
            break;
        case GWL_STYLE:
            Set_Style(window, static_cast<DWORD>(value));
            break;
        case GWL_EXSTYLE:
            window.m_ExtendedStyle = static_cast<DWORD>(value);
            break;
        case GWLP_USERDATA:
            window.m_UserData = value;
            break;
    }
}

}  // namespace

LRESULT rv::Window::Default(UINT message, WPARAM first, LPARAM second) noexcept {
    switch (message) {
        case WM_NCCREATE:
            return Set_Text(*this, reinterpret_cast<const CREATESTRUCTA*>(second)->lpszName);
        case WM_SETTEXT:
            if (!Set_Text(*this, reinterpret_cast<LPCSTR>(second))) return FALSE;
            Invalidate(*this, true);
            return TRUE;
        case WM_GETTEXT:
            return Hand_Out(View_Of(m_Text.get()), reinterpret_cast<LPSTR>(second), first);
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(View_Of(m_Text.get()).size());
        case WM_PAINT: {
            PAINTSTRUCT painting;
            BeginPaint(Handle(), &painting);
            EndPaint(Handle(), &painting);
            return 0;
        }
        case WM_ERASEBKGND:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSTATIC:
            return Default_Of_Painting(*this, message, first);
        default:
            return 0;
    }
}

LONG_PTR GetWindowLongPtrA(HWND window, int index) noexcept {
    const Window* const found = rv::Window_Of(window);
    return found ? Value_Of(*found, index) : 0;
}

LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value) noexcept {
    Window* const found = rv::Window_Of(window);
    if (!found) return 0;
    const LONG_PTR before = Value_Of(*found, index);
    Set_Value(*found, index, value);
    return before;
}

LONG GetWindowLongA(HWND window, int index) noexcept {
    return static_cast<LONG>(GetWindowLongPtrA(window, index));
}

LONG SetWindowLongA(HWND window, int index, LONG value) noexcept {
    return static_cast<LONG>(SetWindowLongPtrA(window, index, value));
}

int GetClassNameA(HWND window, LPSTR buffer, int room) noexcept {
    const Window* const found = rv::Window_Of(window);
    if (!found) return 0;
    if (room <= 0) return static_cast<int>(Refuse(ERROR_INSUFFICIENT_BUFFER));
    return rv::Hand_Out(found->m_Class->name, buffer, static_cast<std::size_t>(room));
}

HWND GetParent(HWND window) noexcept {
    const Window* const found = rv::Window_Of(window);
    const bool has_one = found && (found->Is_Child() || (found->m_Style & WS_POPUP));
    return has_one ? rv::Handle_Of(found->Parent()) : nullptr;
}

HWND GetDlgItem(HWND window, int id) noexcept {
    const Window* const found = rv::Window_Of(window);
    if (!found) return nullptr;
    const Window* at = found->First_Child();
    while (at && static_cast<int>(at->m_Id) != id)
        at = at->Next_Sibling();
    if (!at) SetLastError(ERROR_CONTROL_ID_NOT_FOUND);
    return rv::Handle_Of(at);
}

int GetDlgCtrlID(HWND window) noexcept {
    const Window* const found = rv::Window_Of(window);
    return found ? static_cast<int>(found->m_Id) : 0;
}

int GetWindowTextA(HWND window, LPSTR buffer, int room) noexcept {
    if (room <= 0) return 0;
    buffer[0] = '\0';
    return static_cast<int>(SendMessageA(window, WM_GETTEXT, static_cast<WPARAM>(room),
                                         reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthA(HWND window) noexcept {
    return static_cast<int>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0));
}

BOOL SetWindowTextA(HWND window, LPCSTR text) noexcept {
    return SendMessageA(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) == TRUE;
}
