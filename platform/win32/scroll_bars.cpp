#include "scroll_bars.h"

#include <cstdint>

#include "edge.h"
#include "rectangle.h"
#include "window_place.h"

namespace {

using rv::kScrollBar;
using rv::Surface;

constexpr int kArrow = 4;  // from its point to its base
constexpr int kLeastThumb = 8;

// Between the arrows, along the bar.
struct Thumb {
    int start;
    int length;
};

Thumb Thumb_Of(int room, int shown, int content, int above) noexcept {
    const auto share = [](int of, int part, int whole) {
        return static_cast<int>(std::int64_t{of} * part / std::max(whole, 1));
    };
    const int length = std::clamp(share(room, shown, content), std::min(kLeastThumb, room), room);
    const int start = share(room - length, above, content - shown);
    return {std::clamp(start, 0, room - length), length};
}

void Draw_Box(Surface& picture, const RECT& box, const RECT& clip) noexcept {
    picture.Fill(box, rv::Swapped(GetSysColor(COLOR_BTNFACE)), clip);
    rv::Draw_Edge(picture, box, EDGE_RAISED, BF_RECT, clip);
}

void Draw_Arrow(Surface& picture, const RECT& box, bool is_vertical, bool is_first,
                const RECT& clip) noexcept {
    Draw_Box(picture, box, clip);
    const int x = (box.left + box.right) / 2;
    const int y = (box.top + box.bottom) / 2;
    for (int step = 0; step < kArrow; ++step) {
        const int along = is_first ? step - kArrow / 2 : kArrow / 2 - 1 - step;
        const RECT line = is_vertical ? RECT{x - step, y + along, x + step + 1, y + along + 1}
                                      : RECT{x + along, y - step, x + along + 1, y + step + 1};
        picture.Fill(line, rv::Swapped(GetSysColor(COLOR_BTNTEXT)), clip);
    }
}

void Draw_Bar(Surface& picture, const RECT& bar, bool is_vertical, int content, int above,
              const RECT& clip) noexcept {
    picture.Fill(bar, rv::Swapped(GetSysColor(COLOR_BTNHIGHLIGHT)), clip);
    const int length = is_vertical ? rv::Height_Of(bar) : rv::Width_Of(bar);
    // A part of the bar, from its start.
    const auto part = [&](int start, int size) {
        return is_vertical ? RECT{bar.left, bar.top + start, bar.right, bar.top + start + size}
                           : RECT{bar.left + start, bar.top, bar.left + start + size, bar.bottom};
    };
    if (length < 2 * kScrollBar) return;
    Draw_Arrow(picture, part(0, kScrollBar), is_vertical, true, clip);
    Draw_Arrow(picture, part(length - kScrollBar, kScrollBar), is_vertical, false, clip);
    const Thumb thumb = Thumb_Of(length - 2 * kScrollBar, length, content, above);
    Draw_Box(picture, part(kScrollBar + thumb.start, thumb.length), clip);
}

}  // namespace

void rv::Fit_Scroll_Bars(Window& window, const SIZE& content, int above) noexcept {
    const RECT before = Inside_Of(window);
    window.m_ScrollBars = {};
    const RECT room = Inside_Of(window);
    bool is_higher = content.cy > room.bottom;
    const bool is_wider = content.cx > room.right - (is_higher ? kScrollBar : 0);
    is_higher = is_higher || (is_wider && content.cy > room.bottom - kScrollBar);
    window.m_ScrollBars = {content, above, is_higher, is_wider};
    Tell_Size(window, before);
}

RECT rv::With_Scroll_Bars(const Window& window, const RECT& inner) noexcept {
    RECT all = inner;
    if (window.m_ScrollBars.has_vertical) all.right += kScrollBar;
    if (window.m_ScrollBars.has_horizontal) all.bottom += kScrollBar;
    return all;
}

void rv::Draw_Scroll_Bars(Surface& picture, const Window& window, const RECT& inner,
                          const RECT& clip) noexcept {
    const auto& [content, above, has_vertical, has_horizontal] = window.m_ScrollBars;
    const auto& [left, top, right, bottom] = inner;
    if (has_vertical)
        Draw_Bar(picture, {right, top, right + kScrollBar, bottom}, true, content.cy, above, clip);
    if (has_horizontal)
        Draw_Bar(picture, {left, bottom, right, bottom + kScrollBar}, false, content.cx, 0, clip);
    if (has_vertical && has_horizontal) {
        picture.Fill({right, bottom, right + kScrollBar, bottom + kScrollBar},
                     Swapped(GetSysColor(COLOR_BTNFACE)), clip);
    }
}
