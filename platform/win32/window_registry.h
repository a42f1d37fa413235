// The top-level windows of a user, as all of their processes see them.
#pragma once

#include <optional>
#include <string_view>

#include "fold.h"
#include "window.h"

// A table in shared memory that the processes of a user have in common. It is there as long as a
// process with a top-level window lives. The windows of a process that was killed are in nobody's
// sight, and the next process that looks clears them away.
//
// Any thread. Nothing here throws or takes memory from the heap.
namespace rv::window_registry {

constexpr std::size_t kCapacity = 1024;    // windows of all processes together
constexpr std::size_t kLongestName = 255;  // of a class

// Enters a window of this process, which is not shown, and gives its handle; no other window had it
// before. `owner`: null, or a top-level window. Null when the table is full or cannot be had.
[[nodiscard]] HWND Add(std::string_view class_name, HWND owner) noexcept;

// Takes a window of this process out. Other handles are left alone.
void Remove(HWND window) noexcept;

// What all processes know of a window.
struct State {
    bool visible;
    bool iconic;
};

// Nothing when it is no top-level window of the user.
[[nodiscard]] std::optional<State> Get_State(HWND window) noexcept;

struct Showing {
    bool visible;
    std::optional<bool> iconic;  // nothing: as it was
    bool activate;
};

// Gives whether the window was visible before; nothing when it is no top-level window of the user.
// A foreground that is hidden or made an icon is none any more.
std::optional<bool> Show(HWND window, const Showing& showing) noexcept;

// Makes a window the foreground and the one that was active last. False when it is no top-level
// window of the user.
bool Activate(HWND window) noexcept;

// Of the windows of a class, in which case does not count, the one that was active last. Null when
// there is none.
[[nodiscard]] HWND Find(std::string_view class_name) noexcept;

// Of a window and all that it owns, the owned ones of owned ones included, the one that was active
// last; the window itself when it has an owner, or none of them ever was. Null when it is no
// top-level window.
[[nodiscard]] HWND Last_Active_Popup(HWND window) noexcept;

[[nodiscard]] HWND Foreground() noexcept;

}  // namespace rv::window_registry
