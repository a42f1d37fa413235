// The class library's string.
#pragma once

#include <cstdarg>
#include <cstring>
#include <type_traits>

#include "../export.h"
#include "../winapi.h"

// A counted string of 8-bit characters. NUL bytes inside are kept, bytes of 0x80 and above are
// ordinary, and a NUL always stands behind the last one. Up to 15 bytes need no memory of their
// own.
//
// A copy is a value copy, so one object may be read by several threads without a lock. Positions
// and lengths count bytes, from 0. Searching, trimming and comparing go by the counted length, NUL
// bytes included. White space is 0x09 to 0x0D and 0x20. A `const char*` argument ends at its NUL;
// null counts as the empty text.
//
// An operation that needs memory which is not there, or a text of more than 2,147,483,646 bytes,
// throws CMemoryException* and leaves the text as it was.
class RVPLATFORM_API CString {
public:
    CString() noexcept : m_Data(m_Inline) {}
    CString(const CString& other) : CString(other.m_Data, other.m_Length) {}
    CString(CString&& other) noexcept : CString() { Swap(other); }
    CString(const char* text) : CString(text, Text_Length(text)) {}
    CString(const char* bytes, int length) : CString() { SetString(bytes, length); }
    // `character`, `count` times over; none for a count of 0 or below.
    explicit CString(char character, int count = 1);
    // The wide text made narrow, in the encoding of the thread's locale. Null counts as empty.
    CString(const wchar_t* text);
    ~CString() {
        if (m_Data != m_Inline) Release();
    }

    CString& operator=(const CString& other) {
        SetString(other.m_Data, other.m_Length);
        return *this;
    }
    CString& operator=(CString&& other) noexcept {
        Swap(other);
        return *this;
    }
    CString& operator=(const char* text) {
        SetString(text);
        return *this;
    }

    int GetLength() const noexcept { return m_Length; }
    bool IsEmpty() const noexcept { return m_Length == 0; }
    // Gives the text's memory back, too.
    void Empty() noexcept;
    const char* GetString() const noexcept { return m_Data; }
    operator const char*() const noexcept { return m_Data; }
    // The byte at `index`, which is 0 to GetLength().
    char GetAt(int index) const noexcept { return m_Data[index]; }
    char operator[](int index) const noexcept { return m_Data[index]; }
    void SetAt(int index, char character) noexcept { m_Data[index] = character; }

    // Replaces the text. The source may lie inside this string, its reserved room included.
    void SetString(const char* text) { SetString(text, Text_Length(text)); }
    void SetString(const char* bytes, int length) {
        if (length > m_Capacity || Holds(bytes)) return Set_Slow(bytes, length);
        Fill(bytes, length);
    }

    // Adds to the end. The source may lie inside this string, its reserved room included.
    void Append(const char* bytes, int length);
    CString& operator+=(const CString& other) {
        Append(other.m_Data, other.m_Length);
        return *this;
    }
    CString& operator+=(const char* text) {
        Append(text, Text_Length(text));
        return *this;
    }
    CString& operator+=(char character) {
        if (m_Length == m_Capacity) Grow(1);
        m_Data[m_Length++] = character;
        m_Data[m_Length] = '\0';
        return *this;
    }

    // By character code: below, at or above 0.
    int Compare(const CString& other) const noexcept;
    int Compare(const char* text) const noexcept;
    // The same with ASCII letters folded, and those of a single-byte locale of the thread.
    int CompareNoCase(const CString& other) const noexcept;
    int CompareNoCase(const char* text) const noexcept;

    // The first place at or behind `start`, or -1. A start outside of the text finds nothing.
    int Find(char character, int start = 0) const noexcept;
    int Find(const CString& text, int start = 0) const noexcept;
    int Find(const char* text, int start = 0) const noexcept;

    // Parts of the text; what lies outside of it is left out.
    CString Left(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Right(int count) const;

    // Inserts before `index`, at the end for an index behind it, and gives the new length.
    int Insert(int index, const CString& text);
    CString& MakeUpper() noexcept;
    // Two texts made lower compare as CompareNoCase does.
    CString& MakeLower() noexcept;
    CString& TrimLeft() noexcept;
    CString& TrimRight() noexcept;

    // Room for at least `capacity` bytes and the NUL; the text and its length stay. What is written
    // behind the text becomes part of it with ReleaseBuffer. The pointer lasts until the next
    // operation that changes the string.
    char* GetBuffer(int capacity) {
        if (capacity > m_Capacity) Reserve(capacity);
        return m_Data;
    }
    // Sets the length, up to the reserved capacity; -1: up to the first NUL in it.
    void ReleaseBuffer(int length = -1) noexcept {
        if (length < 0) length = First_Nul();
        m_Length = length < m_Capacity ? length : m_Capacity;
        m_Data[m_Length] = '\0';
    }
    // Gives memory beyond the text back. Never fails.
    void FreeExtra() noexcept;

    // As printf into the text. A CString may be given for %s.
    template <class... Arguments>
    void Format(const char* format, const Arguments&... arguments) {
        Format_Arguments(format, Plain(arguments)...);
    }

private:
    static constexpr int kInlineCapacity = 15;

    static int Text_Length(const char* text);
    int First_Nul() const noexcept;

    template <class T>
    static auto Plain(const T& argument) noexcept {
        if constexpr (std::is_base_of_v<CString, T>)
            return argument.GetString();
        else if constexpr (std::is_array_v<T>)
            return static_cast<const std::remove_extent_t<T>*>(argument);
        else
            return argument;
    }

    bool Holds(const char* bytes) const noexcept {
        return bytes >= m_Data && bytes <= m_Data + m_Capacity;
    }
    void Fill(const char* bytes, int length) noexcept {
        m_Length = length > 0 ? length : 0;
        if (m_Length > 0) std::memcpy(m_Data, bytes, static_cast<std::size_t>(m_Length));
        m_Data[m_Length] = '\0';
    }
    void Set_Slow(const char* bytes, int length);
    void Reserve(int capacity);
    void Grow(int additional);
    void Release() noexcept;
    void Swap(CString& other) noexcept;
    void Format_Arguments(const char* format, ...);

    char* m_Data;  // m_Inline, or a heap block of m_Capacity + 1 bytes
    int m_Length = 0;
    int m_Capacity = kInlineCapacity;
    char m_Inline[kInlineCapacity + 1] = {};
};

RVPLATFORM_API CString operator+(const CString& left, const CString& right);
RVPLATFORM_API CString operator+(const CString& left, const char* right);
RVPLATFORM_API CString operator+(const char* left, const CString& right);
RVPLATFORM_API CString operator+(const CString& left, char right);

inline bool operator==(const CString& left, const CString& right) noexcept {
    return left.GetLength() == right.GetLength() && left.Compare(right) == 0;
}
inline bool operator==(const CString& left, const char* right) noexcept {
    return left.Compare(right) == 0;
}
inline bool operator<(const CString& left, const CString& right) noexcept {
    return left.Compare(right) < 0;
}
