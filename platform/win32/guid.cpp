#include "guid.h"

#include <cstring>
#include <string_view>

namespace {

// Takes the bytes in the order of the text, whatever that of the processor.
struct BytesInOrder {
    explicit BytesInOrder(REFGUID guid) noexcept {
        Add(guid.Data1, 4);
        Add(guid.Data2, 2);
        Add(guid.Data3, 2);
        for (const BYTE byte : guid.Data4)
            Add(byte, 1);
    }
    void Add(ULONG number, int count) noexcept {
        while (count-- > 0)
            bytes[size++] = static_cast<BYTE>(number >> 8 * count);
    }

    BYTE bytes[sizeof(GUID)];
    int size = 0;
};

// A byte of the GUID stands in place of each x.
constexpr std::wstring_view kForm = L"{xxxx-xx-xx-xx-xxxxxx}";
constexpr int kTextSize = 2 * sizeof(GUID) + 4 + 2 + 1;  // digits, hyphens, braces, terminator

}  // namespace

BOOL IsEqualGUID(REFGUID left, REFGUID right) noexcept {
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}

int StringFromGUID2(REFGUID guid, LPWSTR text, int size) noexcept {
    if (size < kTextSize) return 0;
    const BytesInOrder order(guid);
    const BYTE* next = order.bytes;
    for (const wchar_t character : kForm) {
        if (character != L'x') {
            *text++ = character;
            continue;
        }
        *text++ = L"0123456789ABCDEF"[*next >> 4];
        *text++ = L"0123456789ABCDEF"[*next++ & 15];
    }
    *text = L'\0';
    return kTextSize;
}
