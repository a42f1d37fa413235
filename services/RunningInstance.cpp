#include "RunningInstance.h"

#include "../platform/winapi.h"

bool pFind_Running_Instance(const CString& class_name) noexcept {
    HWND const window = FindWindowA(class_name, nullptr);
    if (!window) return false;
    HWND const popup = GetLastActivePopup(window);
    if (IsIconic(window)) ShowWindow(window, SW_RESTORE);
    SetForegroundWindow(popup);
    return true;
}
