#include "window_class.h"

#include <algorithm>
#include <mutex>

#include "date_time_picker.h"
#include "error.h"
#include "window_registry.h"

namespace {

using rv::Window;
using rv::WindowClass;
using rv::window_registry::kLongestName;

Window* Make_Picker(const WindowClass&, DWORD style) noexcept {
    return rv::Make_Date_Time_Picker(style);
}

constexpr WindowClass kBuiltIn[] = {{{}, DATETIMEPICK_CLASSA, &Make_Picker, nullptr}};

class ApplicationWindow final : public Window {
public:
    explicit ApplicationWindow(WNDPROC procedure) noexcept : m_Procedure(procedure) {}

    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        return m_Procedure(Handle(), message, first, second);
    }

private:
    const WNDPROC m_Procedure;
};

Window* Make_Application_Window(const WindowClass& window_class, DWORD) noexcept {
    return new (std::nothrow) ApplicationWindow(window_class.procedure);
}

struct ApplicationClass : WindowClass {
    ApplicationClass* next;
    ATOM number;
    char text[kLongestName];
};

std::mutex g_Mutex;
ApplicationClass* g_Newest = nullptr;

bool Is_Same_Name(std::string_view left, std::string_view right) noexcept {
    return std::ranges::equal(left, right, {}, rv::Folded, rv::Folded);
}

// With g_Mutex held.
const WindowClass* Find(std::string_view name) noexcept {
    for (const WindowClass& built_in : kBuiltIn) {
        if (Is_Same_Name(built_in.name, name)) return &built_in;
    }
    const ApplicationClass* at = g_Newest;
    while (at && !Is_Same_Name(at->name, name))
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
    added->next = g_Newest;
    // The system's numbers of this kind begin here.
    added->number = static_cast<ATOM>(g_Newest ? g_Newest->number + 1 : 0xC000);
    g_Newest = added;
    return added->number;
}

LRESULT DefWindowProcA(HWND, UINT, WPARAM, LPARAM) noexcept {
    return 0;
}
