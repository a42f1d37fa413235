#include "window_class.h"

#include <mutex>

#include "button.h"
#include "date_time_picker.h"
#include "dialog.h"
#include "edit.h"
#include "error.h"
#include "fold.h"
#include "header.h"
#include "list_box.h"
#include "list_view.h"
#include "static_control.h"
#include "tab_control.h"
#include "window_registry.h"

namespace {

using rv::Window;
using rv::WindowClass;
using rv::window_registry::kLongestName;

constexpr WindowClass kBuiltIn[] = {
    {{}, "Button", &rv::Make_Button, &rv::Built_In_Procedure, nullptr},
    {{}, "Edit", &rv::Make_Edit, &rv::Built_In_Procedure, nullptr},
    {{}, "ListBox", &rv::Make_List_Box, &rv::Built_In_Procedure, nullptr},
    {{}, "Static", &rv::Make_Static, &rv::Built_In_Procedure, nullptr},
    {{}, "#32770", &rv::Make_Dialog, &rv::Built_In_Procedure, nullptr},
    {{}, WC_HEADERA, &rv::Make_Header, &rv::Built_In_Procedure, nullptr},
    {{}, WC_LISTVIEWA, &rv::Make_List_View, &rv::Built_In_Procedure, nullptr},
    {{}, WC_TABCONTROLA, &rv::Make_Tab_Control, &rv::Built_In_Procedure, nullptr},
    {{}, DATETIMEPICK_CLASSA, &rv::Make_Date_Time_Picker, &rv::Built_In_Procedure, nullptr},
};

Window* Make_Application_Window() noexcept {
    return new (std::nothrow) Window;
}

struct ApplicationClass : WindowClass {
    ApplicationClass* next;
    ATOM number;
    char text[kLongestName];
};

std::mutex g_Mutex;
ApplicationClass* g_Newest = nullptr;

// With g_Mutex held.
const WindowClass* Find(std::string_view name) noexcept {
    for (const WindowClass& built_in : kBuiltIn) {
        if (rv::Is_Same_Folded(built_in.name, name)) return &built_in;
    }
    const ApplicationClass* at = g_Newest;
    while (at && !rv::Is_Same_Folded(at->name, name))
        at = at->next;
    return at;
}

ATOM Refuse(DWORD error) noexcept {
    SetLastError(error);
    return 0;
}

}  // namespace

const WindowClass* rv::Find_Window_Class(std::string_view name) noexcept {
    const std::lock_guard lock(g_Mutex);
    return Find(name);
}

ATOM RegisterClassA(const WNDCLASSA* window_class) noexcept {
    const std::string_view name =
        window_class && window_class->lpszClassName ? window_class->lpszClassName : "";
    if (name.empty() || name.size() > kLongestName || !window_class->lpfnWndProc)
        return Refuse(ERROR_INVALID_PARAMETER);
    const std::lock_guard lock(g_Mutex);
    if (Find(name)) return Refuse(ERROR_CLASS_ALREADY_EXISTS);
    auto* const added = new (std::nothrow) ApplicationClass;
    if (!added) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    added->name = {added->text, name.copy(added->text, name.size())};
    added->make = &Make_Application_Window;
    added->procedure = window_class->lpfnWndProc;
    added->background = window_class->hbrBackground;
    added->next = g_Newest;
    // The system's numbers of this kind begin here.
    added->number = static_cast<ATOM>(g_Newest ? g_Newest->number + 1 : 0xC000);
    g_Newest = added;
    return added->number;
}
