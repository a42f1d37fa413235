// Texts that windows and their items keep.
#pragma once

#include <cstring>
#include <string_view>

#include "../heap.h"
#include "types.h"

namespace rv {

// A text of its own, which Heap_Free ends; null for the empty one, which takes no memory.
using OwnedText = char*;

// False without memory, with `copy` as it was. A null text is the empty one.
[[nodiscard]] inline bool Copy_Text(LPCSTR text, OwnedText& copy) noexcept {
    const std::size_t length = text ? std::strlen(text) : 0;
    char* block = nullptr;
    if (length != 0) {
        block = static_cast<char*>(Heap_Allocate(length + 1));
        if (!block) return false;
        std::memcpy(block, text, length + 1);
    }
    copy = block;
    return true;
}

// The same in the place of another one, which ends.
[[nodiscard]] inline bool Replace_Text(OwnedText& text, LPCSTR by) noexcept {
    OwnedText copy;
    if (!Copy_Text(by, copy)) return false;
    Heap_Free(text);
    text = copy;
    return true;
}

[[nodiscard]] inline std::string_view View_Of(const char* text) noexcept {
    return text ? text : "";
}

// Copies as much as there is room for, with a NUL, and gives the length without that.
inline int Hand_Out(std::string_view text, LPSTR buffer, std::size_t room) noexcept {
    if (!buffer || room == 0) return 0;
    const std::size_t length = text.copy(buffer, room - 1);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

}  // namespace rv
