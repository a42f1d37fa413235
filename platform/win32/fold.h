// Names that do not regard case.
#pragma once

#include <algorithm>
#include <string_view>

namespace rv {

// The lower case of an ASCII letter, any other character itself.
[[nodiscard]] constexpr char Folded(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
}

[[nodiscard]] constexpr bool Is_Same_Folded(std::string_view left,
                                            std::string_view right) noexcept {
    return std::ranges::equal(left, right, {}, Folded, Folded);
}

}  // namespace rv
