// What a user does, as messages: to the window that is pointed at, or that has the focus.
#pragma once

#include "window.h"

// WPARAM: keys and buttons that are down; LPARAM: the place, from the corner of the inside.
inline constexpr UINT WM_MOUSEMOVE = 0x200;
inline constexpr UINT WM_LBUTTONDOWN = 0x201;
inline constexpr UINT WM_LBUTTONUP = 0x202;

inline constexpr UINT WM_KEYDOWN = 0x100;  // WPARAM: one of the keys below
inline constexpr UINT WM_KEYUP = 0x101;
inline constexpr UINT WM_CHAR = 0x102;  // WPARAM: the character

inline constexpr WPARAM MK_LBUTTON = 1;
inline constexpr WPARAM MK_CONTROL = 8;

inline constexpr int VK_BACK = 0x8;
inline constexpr int VK_SPACE = 0x20;
inline constexpr int VK_UP = 0x26;
inline constexpr int VK_DOWN = 0x28;

namespace rv {

// The place that such a message tells.
[[nodiscard]] constexpr POINT Place_Of(LPARAM second) noexcept {
    return {static_cast<SHORT>(second), static_cast<SHORT>(second >> 16)};
}

}  // namespace rv
