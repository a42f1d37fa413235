// Sums with rectangles. Right and bottom lie outside; what has no width or no height is empty.
#pragma once

#include <algorithm>

#include "window.h"

namespace rv {

[[nodiscard]] constexpr bool Is_Empty(const RECT& place) noexcept {
    return place.left >= place.right || place.top >= place.bottom;
}

[[nodiscard]] constexpr int Width_Of(const RECT& place) noexcept {
    return place.right - place.left;
}

[[nodiscard]] constexpr int Height_Of(const RECT& place) noexcept {
    return place.bottom - place.top;
}

[[nodiscard]] constexpr bool Contains(const RECT& place, int x, int y) noexcept {
    return place.left <= x && x < place.right && place.top <= y && y < place.bottom;
}

[[nodiscard]] constexpr bool Contains(const RECT& outer, const RECT& inner) noexcept {
    return outer.left <= inner.left && inner.right <= outer.right && outer.top <= inner.top &&
           inner.bottom <= outer.bottom;
}

[[nodiscard]] constexpr RECT Intersection(const RECT& left, const RECT& right) noexcept {
    return {std::max(left.left, right.left), std::max(left.top, right.top),
            std::min(left.right, right.right), std::min(left.bottom, right.bottom)};
}

// The smallest that holds both.
[[nodiscard]] constexpr RECT Union(const RECT& left, const RECT& right) noexcept {
    if (Is_Empty(left)) return right;
    if (Is_Empty(right)) return left;
    return {std::min(left.left, right.left), std::min(left.top, right.top),
            std::max(left.right, right.right), std::max(left.bottom, right.bottom)};
}

[[nodiscard]] constexpr RECT Moved(const RECT& place, int x, int y) noexcept {
    return {place.left + x, place.top + y, place.right + x, place.bottom + y};
}

[[nodiscard]] constexpr RECT Shrunk(const RECT& place, int by) noexcept {
    return {place.left + by, place.top + by, place.right - by, place.bottom - by};
}

}  // namespace rv
