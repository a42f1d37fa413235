#include "CString.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Allocation.h"

namespace {

constexpr std::string_view kWhiteSpace = "\t\n\v\f\r ";
constexpr int kMaxLength = INT_MAX - 1;

std::string_view View(const CString& text) noexcept {
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

std::string_view View(const char* text) noexcept {
    return text ? std::string_view(text) : std::string_view();
}

// std::string_view compares as unsigned characters, which is the order of character codes.
int Sign(int value) noexcept {
    return (value > 0) - (value < 0);
}

// The case fold of the thread's locale. A byte of a multi-byte encoding is no letter by itself.
class Folding {
public:
    unsigned char Lower(char character) const noexcept {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80)
            return Between(byte, 'A', 'Z') ? static_cast<unsigned char>(byte + 32) : byte;
        return m_SingleByte ? static_cast<unsigned char>(std::tolower(byte)) : byte;
    }
    unsigned char Upper(char character) const noexcept {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80)
            return Between(byte, 'a', 'z') ? static_cast<unsigned char>(byte - 32) : byte;
        return m_SingleByte ? static_cast<unsigned char>(std::toupper(byte)) : byte;
    }

private:
    static bool Between(unsigned char byte, char first, char last) noexcept {
        return byte >= static_cast<unsigned char>(first) &&
               byte <= static_cast<unsigned char>(last);
    }

    bool m_SingleByte = MB_CUR_MAX == 1;
};

int Compare_Folded(std::string_view left, std::string_view right) noexcept {
    const Folding folding;
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = folding.Lower(left[i]) - folding.Lower(right[i]);
        if (difference != 0) return Sign(difference);
    }
    return left.size() < right.size() ? -1 : left.size() > right.size();
}

int Find_In(std::string_view text, std::string_view part, int start) noexcept {
    if (start < 0 || static_cast<std::size_t>(start) > text.size()) return -1;
    const std::size_t at = text.find(part, static_cast<std::size_t>(start));
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

}  // namespace

CString::CString(char character, int count) : CString() {
    if (count <= 0) return;
    Reserve(count);
    std::memset(m_Data, character, static_cast<std::size_t>(count));
    m_Length = count;
    m_Data[count] = '\0';
}

CString::CString(const wchar_t* text) : CString() {
    if (!text || !*text) return;
    // The count includes the terminator on both sides.
    const int size = WideCharToMultiByte(CP_THREAD_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) return;
    Reserve(size - 1);
    WideCharToMultiByte(CP_THREAD_ACP, 0, text, -1, m_Data, size, nullptr, nullptr);
    m_Length = size - 1;
}

int CString::Text_Length(const char* text) {
    if (!text) return 0;
    const std::size_t length = std::strlen(text);
    if (length > static_cast<std::size_t>(kMaxLength)) AfxThrowMemoryException();
    return static_cast<int>(length);
}

void CString::Empty() noexcept {
    if (m_Data != m_Inline) Release();
    m_Data = m_Inline;
    m_Capacity = kInlineCapacity;
    m_Length = 0;
    m_Inline[0] = '\0';
}

// The source lies inside this string, or the text outgrows its room.
void CString::Set_Slow(const char* bytes, int length) {
    if (Holds(bytes)) {
        if (length > 0) std::memmove(m_Data, bytes, static_cast<std::size_t>(length));
        m_Length = std::max(length, 0);
        m_Data[m_Length] = '\0';
        return;
    }
    CString replacement;
    replacement.Reserve(length);
    replacement.Fill(bytes, length);
    Swap(replacement);
}

void CString::Append(const char* bytes, int length) {
    if (length <= 0) return;
    if (length > m_Capacity - m_Length) {
        const std::ptrdiff_t inside = Holds(bytes) ? bytes - m_Data : -1;
        Grow(length);
        if (inside >= 0) bytes = m_Data + inside;
    }
    std::memmove(m_Data + m_Length, bytes, static_cast<std::size_t>(length));
    m_Length += length;
    m_Data[m_Length] = '\0';
}

int CString::Compare(const CString& other) const noexcept {
    return Sign(View(*this).compare(View(other)));
}

int CString::Compare(const char* text) const noexcept {
    return Sign(View(*this).compare(View(text)));
}

int CString::CompareNoCase(const CString& other) const noexcept {
    return Compare_Folded(View(*this), View(other));
}

int CString::CompareNoCase(const char* text) const noexcept {
    return Compare_Folded(View(*this), View(text));
}

int CString::Find(char character, int start) const noexcept {
    return Find_In(View(*this), std::string_view(&character, 1), start);
}

int CString::Find(const CString& text, int start) const noexcept {
    return Find_In(View(*this), View(text), start);
}

int CString::Find(const char* text, int start) const noexcept {
    return Find_In(View(*this), View(text), start);
}

CString CString::Left(int count) const {
    return Mid(0, count);
}

CString CString::Mid(int first) const {
    return Mid(first, m_Length);
}

CString CString::Mid(int first, int count) const {
    first = std::clamp(first, 0, m_Length);
    return {m_Data + first, std::clamp(count, 0, m_Length - first)};
}

CString CString::Right(int count) const {
    return Mid(m_Length - std::clamp(count, 0, m_Length));
}

int CString::Insert(int index, const CString& text) {
    index = std::clamp(index, 0, m_Length);
    if (&text == this) return Insert(index, CString(text));
    if (text.m_Length > m_Capacity - m_Length) Grow(text.m_Length);
    char* const place = m_Data + index;
    std::memmove(place + text.m_Length, place, static_cast<std::size_t>(m_Length - index) + 1);
    std::memcpy(place, text.m_Data, static_cast<std::size_t>(text.m_Length));
    return m_Length += text.m_Length;
}

CString& CString::MakeUpper() noexcept {
    const Folding folding;
    for (char* at = m_Data; at != m_Data + m_Length; ++at)
        *at = static_cast<char>(folding.Upper(*at));
    return *this;
}

CString& CString::MakeLower() noexcept {
    const Folding folding;
    for (char* at = m_Data; at != m_Data + m_Length; ++at)
        *at = static_cast<char>(folding.Lower(*at));
    return *this;
}

CString& CString::TrimLeft() noexcept {
    const std::size_t first = View(*this).find_first_not_of(kWhiteSpace);
    const int cut = first == std::string_view::npos ? m_Length : static_cast<int>(first);
    if (cut > 0) SetString(m_Data + cut, m_Length - cut);
    return *this;
}

CString& CString::TrimRight() noexcept {
    const std::size_t last = View(*this).find_last_not_of(kWhiteSpace);
    ReleaseBuffer(last == std::string_view::npos ? 0 : static_cast<int>(last) + 1);
    return *this;
}

// Looks no further than the room, which need not hold a NUL.
int CString::First_Nul() const noexcept {
    const void* const end = std::memchr(m_Data, '\0', static_cast<std::size_t>(m_Capacity));
    return end ? static_cast<int>(static_cast<const char*>(end) - m_Data) : m_Capacity;
}

void CString::FreeExtra() noexcept {
    // A short text keeps its block, with the room that every string has.
    const int capacity = std::max(m_Length, kInlineCapacity);
    if (m_Data == m_Inline || m_Capacity == capacity) return;
    if (void* const block = rv::Heap_Reallocate(m_Data, static_cast<std::size_t>(capacity) + 1)) {
        m_Data = static_cast<char*>(block);
        m_Capacity = capacity;
    }
}

// Makes room for exactly `capacity` bytes and the NUL; the text stays.
void CString::Reserve(int capacity) {
    if (capacity <= m_Capacity) return;
    if (capacity > kMaxLength) AfxThrowMemoryException();
    const auto size = static_cast<std::size_t>(capacity) + 1;
    const bool grown = m_Data != m_Inline;
    void* const block = grown ? rv::Heap_Reallocate(m_Data, size) : rv::Heap_Allocate(size);
    if (!block) AfxThrowMemoryException();
    if (!grown) std::memcpy(block, m_Inline, sizeof(m_Inline));
    m_Data = static_cast<char*>(block);
    m_Capacity = capacity;
}

// Room for `additional` more bytes, and half as much again for those to come.
void CString::Grow(int additional) {
    if (additional > kMaxLength - m_Length) AfxThrowMemoryException();
    const int needed = m_Length + additional;
    Reserve(std::max(needed, m_Capacity > kMaxLength / 3 * 2 ? needed : m_Capacity / 2 * 3));
}

void CString::Release() noexcept {
    rv::Heap_Free(m_Data);
}

void CString::Swap(CString& other) noexcept {
    if (this == &other) return;
    std::swap(m_Inline, other.m_Inline);
    std::swap(m_Length, other.m_Length);
    std::swap(m_Capacity, other.m_Capacity);
    char* const mine = m_Data;
    m_Data = other.m_Data == other.m_Inline ? m_Inline : other.m_Data;
    other.m_Data = mine == m_Inline ? other.m_Inline : mine;
}

void CString::Format_Arguments(const char* format, ...) {
    va_list arguments;
    va_list measured;
    va_start(arguments, format);
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0) {
        va_end(arguments);
        AfxThrowMemoryException();
    }
    // An argument may be this text itself, so the result is made apart.
    CString result;
    if (length > 0) {
        try {
            result.Reserve(length);
        } catch (...) {
            va_end(arguments);
            throw;
        }
        std::vsnprintf(result.m_Data, static_cast<std::size_t>(length) + 1, format, arguments);
        result.m_Length = length;
    }
    va_end(arguments);
    Swap(result);
}

CString operator+(const CString& left, const CString& right) {
    CString sum;
    sum.GetBuffer(static_cast<int>(
        std::min(LONGLONG{INT_MAX}, LONGLONG{left.GetLength()} + right.GetLength())));
    sum += left;
    sum += right;
    return sum;
}

CString operator+(const CString& left, const char* right) {
    return left + CString(right);
}

CString operator+(const char* left, const CString& right) {
    return CString(left) + right;
}

CString operator+(const CString& left, char right) {
    return left + CString(right);
}
