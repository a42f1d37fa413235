// How large texts are in the built-in font.
#pragma once

#include <string_view>

namespace rv {

inline constexpr int kLineHeight = 13;

// In pixels, of one line. Any thread.
[[nodiscard]] int Width_Of(std::string_view text) noexcept;

}  // namespace rv
