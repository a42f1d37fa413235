// The stand-in of zorLtUtils10: the suite's string class.
#include "../../frame/RVString.h"

#include <charconv>
#include <limits>
#include <utility>

#include "../../platform/mfc/CException.h"

namespace {

bool Is_White_Space(char character) noexcept {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

template <class Number>
CString Decimal_Digits(Number number) {
    char digits[std::numeric_limits<Number>::digits10 + 2];  // one more digit, and the sign
    const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return {digits, static_cast<int>(end - digits)};
}

}  // namespace

RVString::RVString(const CString& text) : CString(text) {}

RVString::RVString(const char* text) : CString(text) {}

RVString::RVString(wchar_t* text) : CString(text) {}

RVString::~RVString() = default;

RVString& RVString::operator=(const CString& text) {
    CString::operator=(text);
    return *this;
}

RVString& RVString::operator=(const char* text) {
    CString::operator=(text);
    return *this;
}

RVString& RVString::operator=(wchar_t* text) {
    CString::operator=(CString(text));
    return *this;
}

bool RVString::operator!=(const CString& other) const noexcept {
    return GetLength() != other.GetLength() || Compare(other) != 0;
}

bool RVString::operator!=(const char* text) const noexcept {
    return Compare(text) != 0;
}

RVString::operator ULONG() const noexcept {
    const char* at = GetString();  // ends in a NUL, which is no digit
    while (Is_White_Space(*at))
        ++at;
    const bool negative = *at == '-';
    if (negative || *at == '+') ++at;
    ULONG number = 0;
    for (; *at >= '0' && *at <= '9'; ++at)
        number = number * 10 + static_cast<ULONG>(*at - '0');
    return negative ? 0 - number : number;
}

BSTR RVString::Get_BSTR() const {
    // Counted, not up to a NUL. A count of 0 would be refused.
    const int length = GetLength();
    const int wide =
        length ? MultiByteToWideChar(CP_THREAD_ACP, 0, GetString(), length, nullptr, 0) : 0;
    BSTR const text = SysAllocStringLen(nullptr, static_cast<UINT>(wide));
    if (!text) AfxThrowMemoryException();
    if (length) MultiByteToWideChar(CP_THREAD_ACP, 0, GetString(), length, text, wide);
    return text;
}

bool RVString::Load_String(HINSTANCE module, unsigned int id) {
    constexpr int kUsualRoom = 256;  // most texts of a user interface fit
    constexpr int kLongestCharacter = 4;
    char usual[kUsualRoom];
    int length = LoadStringA(module, id, usual, kUsualRoom);
    if (length <= 0) return false;
    // The length is not told in advance: a text that ends where the room does may have been cut, in
    // front of a character of several bytes even before.
    if (length + kLongestCharacter < kUsualRoom) {
        SetString(usual, length);
        return true;
    }
    CString text;
    for (int room = 4 * kUsualRoom;; room *= 4) {
        length = LoadStringA(module, id, text.GetBuffer(room - 1), room);
        if (length <= 0) return false;
        if (length + kLongestCharacter >= room) continue;
        text.ReleaseBuffer(length);
        text.FreeExtra();
        CString::operator=(std::move(text));
        return true;
    }
}

void RVString::Number_To_String(ULONG number) {
    CString::operator=(Decimal_Digits(number));
}

void RVString::Number_To_String(int number) {
    CString::operator=(Decimal_Digits(number));
}
