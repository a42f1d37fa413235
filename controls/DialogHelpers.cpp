#include "DialogHelpers.h"

#include <cstring>

namespace {

constexpr DWORD kButtonType = 0xF;

DWORD Style_Of(HWND window) {
    return static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE));
}

bool Has_Type(HWND button, DWORD type) {
    return (Style_Of(button) & kButtonType) == type;
}

void Change_Look(HWND button, DWORD style) {
    SetWindowLongA(button, GWL_STYLE, static_cast<LONG>(style));
    InvalidateRect(button, nullptr, FALSE);
}

void Look_Default(HWND button) {
    if (button && Has_Type(button, BS_PUSHBUTTON))
        Change_Look(button, Style_Of(button) | BS_DEFPUSHBUTTON);
}

void Look_Plain(HWND button) {
    if (button && Has_Type(button, BS_DEFPUSHBUTTON))
        Change_Look(button, Style_Of(button) & ~DWORD{BS_DEFPUSHBUTTON});
}

// The default button of a dialog, which a panel inside of it may not know: then the one of its
// parents does that has a control of the id.
HWND Default_Button_Of(HWND dialog) {
    const auto answer = static_cast<DWORD>(SendMessageA(dialog, DM_GETDEFID, 0, 0));
    if (HIWORD(answer) != DC_HASDEFID) return nullptr;
    HWND button = nullptr;
    for (HWND at = dialog; at && !button; at = GetParent(at))
        button = GetDlgItem(at, LOWORD(answer));
    return button;
}

}  // namespace

LONG pGet_Tab_Ctrl_Data(HWND tab_control, int index) {
    TCITEMA item = {};
    item.mask = TCIF_PARAM;
    SendMessageA(tab_control, TCM_GETITEMA, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
    return static_cast<LONG>(item.lParam);
}

bool pIs_Push_Button(HWND window) {
    char name[40] = {};
    GetClassNameA(window, name, sizeof name);
    return std::strcmp(name, "Button") == 0 &&
           (Has_Type(window, BS_PUSHBUTTON) || Has_Type(window, BS_DEFPUSHBUTTON));
}

bool pSet_Dialog_Focus(HWND control) {
    // No control is none; but without a focus anywhere, null would seem to have it.
    if (!control) return false;
    HWND const previous = SetFocus(control);
    HWND const parent = GetParent(control);
    if (GetFocus() != control) return false;
    HWND const default_button = Default_Button_Of(parent);
    HWND new_default = nullptr, old_default = nullptr;
    if (pIs_Push_Button(control)) {
        new_default = control;
        old_default = default_button;
    } else if (IsWindowEnabled(default_button)) {
        new_default = default_button;
    }
    if (previous && pIs_Push_Button(previous)) old_default = previous;
    Look_Default(new_default);
    if (old_default != new_default) Look_Plain(old_default);
    if (default_button != new_default && default_button != old_default) Look_Plain(default_button);
    return true;
}
