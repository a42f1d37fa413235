// Narrow texts are in the code page of the thread's locale.
#include "../utf8_text.h"

#include <cstddef>

#include "../heap.h"
#include "../winapi.h"

namespace {

int Convert(UINT from, UINT to, const char* source, int length, char* target, int room) noexcept {
    if (length == 0) return 0;
    constexpr int kStackRoom = 512;
    wchar_t on_stack[kStackRoom];
    rv::HeapText on_heap;
    wchar_t* wide = on_stack;
    if (length > kStackRoom) {
        const auto bytes = static_cast<std::size_t>(length) * sizeof(wchar_t);
        on_heap.reset(static_cast<char*>(rv::Heap_Allocate(bytes)));
        if (!on_heap) return -1;
        wide = reinterpret_cast<wchar_t*>(on_heap.get());
    }
    const int count = MultiByteToWideChar(from, 0, source, length, wide, length);
    const int written = WideCharToMultiByte(to, 0, wide, count, target, room, nullptr, nullptr);
    return written > 0 ? written : -1;
}

}  // namespace

int rv::Text_From_Utf8(const char* utf8, int length, char* target, int room) noexcept {
    return Convert(CP_UTF8, CP_THREAD_ACP, utf8, length, target, room);
}

int rv::Utf8_From_Text(const char* text, int length, char* target, int room) noexcept {
    return Convert(CP_THREAD_ACP, CP_UTF8, text, length, target, room);
}
