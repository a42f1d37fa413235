// The built-in font: pictures of the characters of ASCII and Latin-1; a box for any other.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "text_metrics.h"

namespace rv {

struct Glyph {
    int width = 0;
    // From the top of the line down; the leftmost pixel is the lowest bit.
    std::array<std::uint8_t, kLineHeight> rows = {};
};

inline constexpr int kGlyphGap = 1;  // between two

// `character`: a number of Unicode.
[[nodiscard]] const Glyph& Glyph_Of(char32_t character) noexcept;

// Takes the first character from a text that is not empty. A sequence of UTF-8 is one character;
// any other byte is one of Latin-1.
[[nodiscard]] char32_t Take_Character(std::string_view& text) noexcept;

}  // namespace rv
