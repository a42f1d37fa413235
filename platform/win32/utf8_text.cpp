// Narrow texts are UTF-8.
#include "../utf8_text.h"

#include <cstddef>
#include <cstring>

int rv::Text_From_Utf8(const char* utf8, int length, char* target, int room) noexcept {
    if (length > room) return -1;
    std::memcpy(target, utf8, static_cast<std::size_t>(length));
    return length;
}

int rv::Utf8_From_Text(const char* text, int length, char* target, int room) noexcept {
    return Text_From_Utf8(text, length, target, room);
}
