// Scroll bars of windows that have more to show than there is room for. They show where the rows
// are; it is the keyboard that moves them.
#pragma once

#include <algorithm>

#include "surface.h"
#include "window_object.h"

namespace rv {

inline constexpr int kScrollBar = 17;  // how wide one is, or how high

// Gives a window the bars that it needs. `content`: how large the whole of it is, where no bar
// belongs at an edge 0; `above`: how much of the height is above the inside. The inside may have
// another size afterwards, which WM_SIZE tells.
void Fit_Scroll_Bars(Window& window, const SIZE& content, int above) noexcept;

// Of so many rows, in pixels.
[[nodiscard]] inline int Height_Of_Rows(std::size_t count, int height) noexcept {
    constexpr int kMost = 1 << 30;
    return static_cast<int>(std::min(count, static_cast<std::size_t>(kMost / height))) * height;
}

// The inside in the picture, and its bars.
[[nodiscard]] RECT With_Scroll_Bars(const Window& window, const RECT& inner) noexcept;

// `inner`: the inside in the picture.
void Draw_Scroll_Bars(Surface& picture, const Window& window, const RECT& inner,
                      const RECT& clip) noexcept;

}  // namespace rv
