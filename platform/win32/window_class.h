// The classes of windows: the built-in ones, and those that the application registered.
#pragma once

#include <string_view>

#include "window_object.h"

namespace rv {

// Lives as long as the process.
struct WindowClass : NothrowObject {
    std::string_view name;
    Window* (*make)() noexcept;  // gives null without memory
    WNDPROC procedure;
    HBRUSH background;  // null: the window paints all of its inside
};

// Case does not count. Null when there is no such class. Any thread.
[[nodiscard]] const WindowClass* Find_Window_Class(std::string_view name) noexcept;

}  // namespace rv
