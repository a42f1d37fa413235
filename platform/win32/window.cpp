#include "window.h"

#include <atomic>
#include <string_view>
#include <utility>

#include "error.h"
#include "window_class.h"
#include "window_object.h"
#include "window_registry.h"
#include "window_state.h"

namespace {

using rv::Window;

// Some of the system's calls give a meaning of its own to handles that 16 bits can hold.
std::atomic<std::uintptr_t> g_NextHandle = 0x10000;

constexpr std::size_t kBuckets = 256;

// The windows of this thread by their handles. They need no destructor, so that they can be asked
// while the thread ends.
struct Buckets {
    Window* first[kBuckets];
};
thread_local Buckets t_Own;
// Null before the first window. Each message looks here, so it is to be found without a call; of
// the memory for that, a library that is loaded late may not have enough for the buckets.
[[gnu::tls_model("initial-exec")]] constinit thread_local Buckets* t_Buckets = nullptr;

}  // namespace

namespace rv {

class ThreadWindows {
public:
    ThreadWindows() noexcept { t_Buckets = &t_Own; }
    // Ends with the thread, and its windows with it: in silence, since what would hear of it may
    // have ended before.
    ~ThreadWindows() {
        for (Window*& first : t_Own.first) {
            while (first) {
                Window* const window = std::exchange(first, first->m_NextInBucket);
                if (!window->m_IsChild) window_registry::Remove(window->m_Handle);
                Forget_Focus(*window);
                delete window;
            }
        }
    }

    static Window* Find(HWND handle) noexcept {
        if (!t_Buckets) return nullptr;
        Window* window = Bucket_Of(handle);
        while (window && window->m_Handle != handle)
            window = window->m_NextInBucket;
        return window;
    }

    // A child owns nothing: in its place, the window does that it is somewhere inside of.
    static Window* Owner_For(Window* window) noexcept {
        while (window && window->m_IsChild)
            window = window->m_Parent;
        return window;
    }

    static bool Takes_Windows(const Window& parent) noexcept { return !parent.m_IsEnding; }

    void Add(Window& window, Window* parent) noexcept {
        window.m_IsChild = (window.m_Style & WS_CHILD) != 0;
        if (!window.m_IsChild)
            window.m_Handle = window_registry::Add(window.m_Class->name, Handle_Of(parent));
        if (!window.m_Handle) window.m_Handle = reinterpret_cast<HWND>(g_NextHandle++);
        window.m_NextInBucket = std::exchange(Bucket_Of(window.m_Handle), &window);
        window.m_Parent = parent;
        if (parent) Append(List_Of(window), window);
    }

    static void Destroy(Window& window) noexcept {
        const WindowInUse use(window);
        while (!window.m_IsEnding) {
            Window* at = &window;
            while (Window* const owned = First_Staying(at->m_Owned))
                at = owned;
            End(*at);
        }
    }

    // Ends one that was refused before there was anything to tell.
    static void Discard(Window& window) noexcept {
        window.m_IsEnding = true;
        Take_Apart(window);
    }

private:
    static Window*& Bucket_Of(HWND handle) noexcept {
        return t_Buckets->first[reinterpret_cast<std::uintptr_t>(handle) % kBuckets];
    }

    static Window::List& List_Of(Window& window) noexcept {
        return window.m_IsChild ? window.m_Parent->m_Children : window.m_Parent->m_Owned;
    }

    static void Append(Window::List& list, Window& window) noexcept {
        window.m_Previous = std::exchange(list.last, &window);
        (window.m_Previous ? window.m_Previous->m_Next : list.first) = &window;
    }

    static void Take_Out(Window::List& list, Window& window) noexcept {
        (window.m_Previous ? window.m_Previous->m_Next : list.first) = window.m_Next;
        (window.m_Next ? window.m_Next->m_Previous : list.last) = window.m_Previous;
    }

    static Window* First_Staying(const Window::List& list) noexcept {
        Window* at = list.first;
        while (at && at->m_IsEnding)
            at = at->m_Next;
        return at;
    }

    // What is told of an end may end others, or those that all of this is inside of: each window
    // hears of it once, whoever asked for it.
    static void End(Window& root) noexcept {
        const WindowInUse use(root);
        ShowWindow(root.m_Handle, SW_HIDE);
        if (!root.m_IsEnding) Take_Apart(root);
    }

    // Without recursion: children may be nested deeper than the stack is.
    static void Take_Apart(Window& root) noexcept {
        const WindowInUse use(root);
        for (Window* at = &root; at && !root.m_HasEnded; at = Tell_End(*at, root)) {
        }
        for (Window* at = &root; at && !root.m_HasEnded;) {
            while (at->m_Children.first)
                at = at->m_Children.first;
            Window* const next = at == &root ? nullptr : at->m_Parent;
            Finish(*at);
            at = next;
        }
    }

    // Gives the one behind it; none once the root has ended.
    static Window* Tell_End(Window& window, const Window& root) noexcept {
        const WindowInUse use(window);
        if (!std::exchange(window.m_IsEnding, true)) Send(window, WM_DESTROY, 0, 0);
        return window.m_HasEnded ? nullptr : window.Behind(root);
    }

    static void Finish(Window& window) noexcept {
        const WindowInUse use(window);
        if (!std::exchange(window.m_IsFinishing, true)) Send(window, WM_NCDESTROY, 0, 0);
        if (!window.m_HasEnded) Remove(window);
    }

    static void Remove(Window& window) noexcept {
        Window** at = &Bucket_Of(window.m_Handle);
        while (*at != &window)
            at = &((*at)->m_NextInBucket);
        *at = window.m_NextInBucket;
        if (window.m_Parent) Take_Out(List_Of(window), window);
        // Those that it owned and that are ending just now.
        while (Window* const owned = window.m_Owned.first) {
            Take_Out(window.m_Owned, *owned);
            owned->m_Parent = nullptr;
        }
        if (!window.m_IsChild) window_registry::Remove(window.m_Handle);
        Forget_Focus(window);
        window.m_Parent = nullptr;
        window.m_HasEnded = true;
    }
};

Window::~Window() = default;

LRESULT Window::Receive(UINT message, WPARAM first, LPARAM second) noexcept {
    return Default(message, first, second);
}

Window* Window::Behind(const Window& root) const noexcept {
    if (m_Children.first) return m_Children.first;
    const Window* at = this;
    while (at != &root && !at->m_Next)
        at = at->m_Parent;
    return at == &root ? nullptr : at->m_Next;
}

Window* Find_Window(HWND handle) noexcept {
    return ThreadWindows::Find(handle);
}

Window* Window_Of(HWND handle) noexcept {
    Window* const window = ThreadWindows::Find(handle);
    if (!window) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return window;
}

LRESULT Send(Window& window, UINT message, WPARAM first, LPARAM second) noexcept {
    const WindowInUse use(window);
    if (window.Has_Ended()) return 0;
    if (window.m_Procedure == &Built_In_Procedure) return window.Receive(message, first, second);
    return window.m_Procedure(window.Handle(), message, first, second);
}

void Send_Command(Window& window, WORD code) noexcept {
    if (!window.Parent()) return;
    Send(*window.Parent(), WM_COMMAND, MAKEWPARAM(window.m_Id, code),
         reinterpret_cast<LPARAM>(window.Handle()));
}

LRESULT Send_Notice(Window& window, UINT code, NMHDR& notice) noexcept {
    if (!window.Parent()) return 0;
    notice = {window.Handle(), static_cast<UINT_PTR>(window.m_Id), code};
    return Send(*window.Parent(), WM_NOTIFY, notice.idFrom, reinterpret_cast<LPARAM>(&notice));
}

LRESULT Built_In_Procedure(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
    Window* const found = Window_Of(window);
    if (!found) return 0;
    const WindowInUse use(*found);
    return found->Receive(message, first, second);
}

}  // namespace rv

namespace {

HWND Refuse(DWORD error) noexcept {
    SetLastError(error);
    return nullptr;
}

// Asks the window itself. False when it refused, and is no more.
bool Accept(Window& window, CREATESTRUCTA& creation) noexcept {
    const auto record = reinterpret_cast<LPARAM>(&creation);
    if (!rv::Send(window, WM_NCCREATE, 0, record)) {
        if (!window.Has_Ended()) rv::ThreadWindows::Discard(window);
    } else if (!window.Has_Ended() && rv::Send(window, WM_CREATE, 0, record) == -1) {
        rv::ThreadWindows::Destroy(window);
    }
    return !window.Has_Ended();
}

}  // namespace

HWND CreateWindowExA(DWORD extended_style, LPCSTR class_name, LPCSTR text, DWORD style, int x,
                     int y, int width, int height, HWND parent, HMENU id, HINSTANCE module,
                     LPVOID parameter) noexcept {
    static thread_local rv::ThreadWindows windows;
    const rv::WindowClass* const window_class = rv::Find_Window_Class(class_name ? class_name : "");
    if (!window_class) return Refuse(ERROR_CANNOT_FIND_WND_CLASS);
    if (!parent && (style & WS_CHILD)) return Refuse(ERROR_TLW_WITH_WSCHILD);
    Window* above = parent ? rv::Window_Of(parent) : nullptr;
    if (parent && !above) return nullptr;
    if (!(style & WS_CHILD)) above = rv::ThreadWindows::Owner_For(above);
    if (above && !windows.Takes_Windows(*above)) return Refuse(ERROR_INVALID_WINDOW_HANDLE);
    Window* const window = window_class->make();
    if (!window) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    window->m_Class = window_class;
    window->m_Procedure = window_class->procedure;
    window->m_Style = style & ~WS_VISIBLE;
    window->m_ExtendedStyle = extended_style;
    window->m_Id = reinterpret_cast<LONG_PTR>(id);
    window->m_Place = {x, y, x + width, y + height};
    windows.Add(*window, above);
    HWND const handle = window->Handle();
    const rv::WindowInUse use(*window);
    CREATESTRUCTA creation = {parameter,
                              module,
                              id,
                              rv::Handle_Of(above),
                              height,
                              width,
                              y,
                              x,
                              static_cast<LONG>(style),
                              text,
                              class_name,
                              extended_style};
    if (!Accept(*window, creation)) return nullptr;
    if (style & WS_VISIBLE) ShowWindow(handle, SW_SHOW);
    return handle;
}

BOOL DestroyWindow(HWND window) noexcept {
    Window* const found = rv::Window_Of(window);
    if (found) rv::ThreadWindows::Destroy(*found);
    return found != nullptr;
}

BOOL IsWindow(HWND window) noexcept {
    if (rv::Find_Window(window) || rv::window_registry::Get_State(window)) return TRUE;
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return FALSE;
}

LRESULT SendMessageA(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
    Window* const found = rv::Window_Of(window);
    return found ? rv::Send(*found, message, first, second) : 0;
}

LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM first,
                        LPARAM second) noexcept {
    return procedure ? procedure(window, message, first, second) : 0;
}

LRESULT DefWindowProcA(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
    Window* const found = rv::Window_Of(window);
    return found ? found->Default(message, first, second) : 0;
}
