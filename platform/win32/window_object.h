// What a window's handle stands for.
#pragma once

#include "nothrow_object.h"
#include "window.h"

namespace rv {

// Base of the window classes: each derives one, whose objects are its windows.
class Window : public NothrowObject {
public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    // The class's procedure. Gives 0 for a message that it does not know.
    [[nodiscard]] virtual LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept = 0;

    [[nodiscard]] HWND Handle() const noexcept { return m_Handle; }

private:
    friend class ThreadWindows;

    HWND m_Handle = nullptr;
    bool m_IsChild = false;
    Window* m_Parent = nullptr;  // of a child; of any other window, its owner
    Window* m_FirstChild = nullptr;
    Window* m_NextSibling = nullptr;
    Window* m_NextInBucket = nullptr;
};

}  // namespace rv
