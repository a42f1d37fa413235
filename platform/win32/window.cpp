#include "window.h"

#include <atomic>
#include <string_view>

#include "error.h"
#include "window_class.h"
#include "window_object.h"
#include "window_registry.h"

namespace {

using rv::Window;

// Some of the system's calls give a meaning of its own to handles that 16 bits can hold.
std::atomic<std::uintptr_t> g_NextHandle = 0x10000;

constexpr std::size_t kBuckets = 256;

// The windows of this thread by their handles. It needs no destructor, so that it can be asked
// while the thread ends.
thread_local Window* t_Buckets[kBuckets];

}  // namespace

namespace rv {

class ThreadWindows {
public:
    // Ends with the thread, and its windows with it.
    ~ThreadWindows() {
        for (Window*& first : t_Buckets) {
            while (first)
                Destroy(*first);
        }
    }

    static Window* Find(HWND handle) noexcept {
        Window* window = Bucket_Of(handle);
        while (window && window->m_Handle != handle)
            window = window->m_NextInBucket;
        return window;
    }

    HWND Add(Window& window, std::string_view class_name, DWORD style, Window* parent) noexcept {
        window.m_IsChild = (style & WS_CHILD) != 0;
        // A child owns nothing: in its place, the window does that it is somewhere inside of.
        while (!window.m_IsChild && parent && parent->m_IsChild)
            parent = parent->m_Parent;
        if (!window.m_IsChild)
            window.m_Handle =
                rv::window_registry::Add(class_name, parent ? parent->m_Handle : nullptr);
        if (!window.m_Handle) window.m_Handle = reinterpret_cast<HWND>(g_NextHandle++);
        Push(Bucket_Of(window.m_Handle), window, &Window::m_NextInBucket);
        window.m_Parent = parent;
        if (parent) Push(parent->m_FirstChild, window, &Window::m_NextSibling);
        return window.m_Handle;
    }

    // Without recursion: children may be nested deeper than the stack is.
    static void Destroy(Window& window) noexcept {
        for (Window* at = &window; at;) {
            if (at->m_FirstChild) {
                at = at->m_FirstChild;
                continue;
            }
            Window* const next = at == &window ? nullptr : at->m_Parent;
            Remove(*at);
            delete at;
            at = next;
        }
    }

private:
    using Link = Window* Window::*;

    static Window*& Bucket_Of(HWND handle) noexcept {
        return t_Buckets[reinterpret_cast<std::uintptr_t>(handle) % kBuckets];
    }

    static void Push(Window*& first, Window& window, Link next) noexcept {
        window.*next = first;
        first = &window;
    }

    static void Take_Out(Window*& first, Window& window, Link next) noexcept {
        Window** at = &first;
        while (*at != &window)
            at = &((*at)->*next);
        *at = window.*next;
    }

    static void Remove(Window& window) noexcept {
        Take_Out(Bucket_Of(window.m_Handle), window, &Window::m_NextInBucket);
        if (window.m_Parent)
            Take_Out(window.m_Parent->m_FirstChild, window, &Window::m_NextSibling);
        if (!window.m_IsChild) rv::window_registry::Remove(window.m_Handle);
    }
};

Window::~Window() = default;

}  // namespace rv

namespace {

// The window behind a handle; null with the last error set.
Window* Window_Of(HWND handle) noexcept {
    Window* const window = rv::ThreadWindows::Find(handle);
    if (!window) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return window;
}

HWND Refuse(DWORD error) noexcept {
    SetLastError(error);
    return nullptr;
}

}  // namespace

HWND CreateWindowExA(DWORD, LPCSTR class_name, LPCSTR, DWORD style, int, int, int, int, HWND parent,
                     HMENU, HINSTANCE, LPVOID) noexcept {
    static thread_local rv::ThreadWindows windows;
    const rv::WindowClass* const window_class = rv::Find_Window_Class(class_name ? class_name : "");
    if (!window_class) return Refuse(ERROR_CANNOT_FIND_WND_CLASS);
    if (!parent && (style & WS_CHILD)) return Refuse(ERROR_TLW_WITH_WSCHILD);
    Window* const above = parent ? Window_Of(parent) : nullptr;
    if (parent && !above) return nullptr;
    Window* const window = window_class->make(*window_class, style);
    if (!window) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    HWND const handle = windows.Add(*window, window_class->name, style, above);
    if ((style & (WS_VISIBLE | WS_CHILD)) == WS_VISIBLE) ShowWindow(handle, SW_SHOW);
    return handle;
}

BOOL DestroyWindow(HWND window) noexcept {
    Window* const found = Window_Of(window);
    if (found) rv::ThreadWindows::Destroy(*found);
    return found != nullptr;
}

BOOL IsWindow(HWND window) noexcept {
    if (rv::ThreadWindows::Find(window) || rv::window_registry::Get_State(window)) return TRUE;
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return FALSE;
}

LRESULT SendMessageA(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
    Window* const found = Window_Of(window);
    return found ? found->Receive(message, first, second) : 0;
}

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

BOOL IsWindowVisible(HWND window) noexcept {
    const auto state = rv::window_registry::Get_State(window);
    return state && state->visible;
}

BOOL ShowWindow(HWND window, int command) noexcept {
    const auto show = [window](const rv::window_registry::Showing& showing) noexcept -> BOOL {
        const auto was_visible = rv::window_registry::Show(window, showing);
        if (!was_visible) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return was_visible.value_or(false);
    };
    switch (command) {
        case SW_HIDE:
            return show({.visible = false, .iconic = {}, .activate = false});
        case SW_SHOW:
            return show({.visible = true, .iconic = {}, .activate = true});
        case SW_SHOWNORMAL:
        case SW_RESTORE:
            return show({.visible = true, .iconic = false, .activate = true});
        case SW_MINIMIZE:
            return show({.visible = true, .iconic = true, .activate = false});
        default:
            SetLastError(ERROR_INVALID_PARAMETER);
            return FALSE;
    }
}

BOOL SetForegroundWindow(HWND window) noexcept {
    const bool done = rv::window_registry::Activate(window);
    if (!done) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return done;
}

HWND GetForegroundWindow() noexcept {
    return rv::window_registry::Foreground();
}
