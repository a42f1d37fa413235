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

constexpr UINT kMaxLength =
    (std::numeric_limits<DWORD>::max() - sizeof(Prefix) - sizeof(OLECHAR)) / sizeof(OLECHAR);

}  // namespace

BSTR SysAllocString(const OLECHAR* text) noexcept {
    if (!text) return nullptr;
    const std::size_t length = std::wcslen(text);
    return length > kMaxLength ? nullptr : SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept {
    if (length > kMaxLength) return nullptr;
    const std::size_t bytes = length * sizeof(OLECHAR);
    void* const block = rv::Heap_Allocate(sizeof(Prefix) + bytes + sizeof(OLECHAR));
    if (!block) return nullptr;
    auto* const prefix = new (block) Prefix{static_cast<DWORD>(bytes)};
    auto* const copy = reinterpret_cast<OLECHAR*>(prefix + 1);
    if (text) std::memcpy(copy, text, bytes);
    copy[length] = L'\0';
    return copy;
}

void SysFreeString(BSTR text) noexcept {
    if (text) rv::Heap_Free(reinterpret_cast<Prefix*>(text) - 1);
}

UINT SysStringLen(BSTR text) noexcept {
    if (!text) return 0;
    return static_cast<UINT>((reinterpret_cast<const Prefix*>(text) - 1)->bytes / sizeof(OLECHAR));
}
