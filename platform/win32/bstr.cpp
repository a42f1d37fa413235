// Counted wide texts with their length in front.
#include "bstr.h"

#include <cstring>
#include <cwchar>
#include <limits>
#include <new>

#include "../heap.h"

namespace {

// Stands directly in front of the characters.
struct Prefix {
    DWORD bytes;
};

static_assert(sizeof(Prefix) % alignof(OLECHAR) == 0);

// Leaves room for the prefix, the rest of the last character and the terminator.
constexpr DWORD kMaxBytes =
    std::numeric_limits<DWORD>::max() - sizeof(Prefix) - 2 * sizeof(OLECHAR);
constexpr UINT kMaxLength = kMaxBytes / sizeof(OLECHAR);

BSTR Make_Text(const void* content, UINT bytes) noexcept {
    if (bytes > kMaxBytes) return nullptr;
    const std::size_t characters = (bytes + sizeof(OLECHAR) - 1) / sizeof(OLECHAR);
    void* const block = rv::Heap_Allocate(sizeof(Prefix) + (characters + 1) * sizeof(OLECHAR));
    if (!block) return nullptr;
    auto* const text = reinterpret_cast<OLECHAR*>(new (block) Prefix{bytes} + 1);
    text[characters] = L'\0';
    // The last character may end in the middle.
    if (bytes % sizeof(OLECHAR) != 0) text[characters - 1] = L'\0';
    if (content) std::memcpy(text, content, bytes);
    return text;
}

UINT Bytes_Of(BSTR text) noexcept {
    return text ? (reinterpret_cast<const Prefix*>(text) - 1)->bytes : 0;
}

}  // namespace

BSTR SysAllocString(const OLECHAR* text) noexcept {
    if (!text) return nullptr;
    const std::size_t length = std::wcslen(text);
    return length > kMaxLength ? nullptr : SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept {
    if (length > kMaxLength) return nullptr;
    return Make_Text(text, static_cast<UINT>(length * sizeof(OLECHAR)));
}

BSTR SysAllocStringByteLen(LPCSTR bytes, UINT length) noexcept {
    return Make_Text(bytes, length);
}

void SysFreeString(BSTR text) noexcept {
    if (text) rv::Heap_Free(reinterpret_cast<Prefix*>(text) - 1);
}

UINT SysStringLen(BSTR text) noexcept {
    return static_cast<UINT>(Bytes_Of(text) / sizeof(OLECHAR));
}

UINT SysStringByteLen(BSTR text) noexcept {
    return Bytes_Of(text);
}
