// What a window's handle stands for.
#pragma once

#include "../heap.h"
#include "nothrow_object.h"
#include "surface.h"
#include "window.h"

namespace rv {

struct WindowClass;

// Of a window that has more to show than there is room for; in pixels.
struct ScrollBars {
    SIZE content = {};
    int above = 0;
    bool has_vertical = false;
    bool has_horizontal = false;
};

// Base of the built-in window classes: each derives one, whose objects are its windows. The windows
// of an application's class are of this type itself.
class Window : public NothrowObject {
public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    // The class's own procedure.
    virtual LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept;

    // What every window does with a message that its class has no answer of its own for.
    LRESULT Default(UINT message, WPARAM first, LPARAM second) noexcept;

    [[nodiscard]] HWND Handle() const noexcept { return m_Handle; }
    [[nodiscard]] bool Is_Child() const noexcept { return m_IsChild; }
    // Of a child; of any other window, its owner. Null also for one that has ended.
    [[nodiscard]] Window* Parent() const noexcept { return m_Parent; }
    [[nodiscard]] Window* First_Child() const noexcept { return m_Children.first; }
    [[nodiscard]] Window* Last_Child() const noexcept { return m_Children.last; }
    [[nodiscard]] Window* Next_Sibling() const noexcept { return m_Next; }
    [[nodiscard]] Window* Previous_Sibling() const noexcept { return m_Previous; }
    [[nodiscard]] bool Is_Ending() const noexcept { return m_IsEnding; }
    // No longer to be reached by its handle; the object is there for as long as it is in use.
    [[nodiscard]] bool Has_Ended() const noexcept { return m_HasEnded; }

    // The one behind it in a walk over `root` and all that is inside of it, parents first; null at
    // the end.
    [[nodiscard]] Window* Behind(const Window& root) const noexcept;

    const WindowClass* m_Class = nullptr;
    WNDPROC m_Procedure = nullptr;
    DWORD m_Style = 0;
    DWORD m_ExtendedStyle = 0;
    LONG_PTR m_Id = 0;
    LONG_PTR m_UserData = 0;
    HeapText m_Text;    // null for the empty one
    RECT m_Place = {};  // with the frame; of a child, from the corner of its parent's inside
    ScrollBars m_ScrollBars;
    RECT m_Update = {};  // of the inside, what has to be painted; empty for nothing
    bool m_Erase = false;
    Surface m_Surface;  // of the inside, what was painted

private:
    friend class ThreadWindows;
    friend class WindowInUse;

    struct List {
        Window* first = nullptr;
        Window* last = nullptr;
    };

    HWND m_Handle = nullptr;
    bool m_IsChild = false;
    bool m_IsEnding = false;
    bool m_IsFinishing = false;
    bool m_HasEnded = false;
    unsigned m_Uses = 0;
    Window* m_Parent = nullptr;
    List m_Children;
    List m_Owned;
    Window* m_Next = nullptr;
    Window* m_Previous = nullptr;
    Window* m_NextInBucket = nullptr;
};

// Keeps the object of a window that may be ended meanwhile.
class WindowInUse {
public:
    explicit WindowInUse(Window& window) noexcept : m_Window(window) { ++window.m_Uses; }
    WindowInUse(const WindowInUse&) = delete;
    WindowInUse& operator=(const WindowInUse&) = delete;
    ~WindowInUse() {
        if (--m_Window.m_Uses == 0 && m_Window.m_HasEnded) delete &m_Window;
    }

private:
    Window& m_Window;
};

// The window of this thread behind a handle. Null, which Window_Of tells as
// ERROR_INVALID_WINDOW_HANDLE.
[[nodiscard]] Window* Find_Window(HWND handle) noexcept;
[[nodiscard]] Window* Window_Of(HWND handle) noexcept;

[[nodiscard]] inline HWND Handle_Of(const Window* window) noexcept {
    return window ? window->Handle() : nullptr;
}

// Hands a message to the window's procedure. 0 for a window that has ended.
LRESULT Send(Window& window, UINT message, WPARAM first, LPARAM second) noexcept;

// Tells the parent, if there is one, what happened, as WM_COMMAND.
void Send_Command(Window& window, WORD code) noexcept;

// Asks or tells the parent, if there is one, as WM_NOTIFY; 0 without one. `notice` begins with an
// NMHDR, whose fields are filled.
LRESULT Send_Notice(Window& window, UINT code, NMHDR& notice) noexcept;

// The procedure of all built-in classes.
LRESULT Built_In_Procedure(HWND window, UINT message, WPARAM first, LPARAM second) noexcept;

}  // namespace rv
