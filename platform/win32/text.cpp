// Text conversion through the C library's locales.
#include "text.h"

#include <langinfo.h>

#include <climits>
#include <cstring>
#include <cwchar>

#include "error.h"

namespace {

// Where a byte without meaning goes, so that it can come back.
constexpr wchar_t kFirstLoneUnit = 0xDC80;
constexpr wchar_t kLastLoneUnit = 0xDCFF;
constexpr wchar_t kLoneBase = 0xDC00;

// The converters of some systems let greater numbers through.
constexpr wchar_t kLastCharacter = 0x10FFFF;

// What every encoding of a locale has at its ASCII place: neither the letters that a few of them
// put at control characters nor the two places that others give to national ones.
constexpr bool Is_Plain(wchar_t character) noexcept {
    return character >= L' ' && character <= L'}' && character != L'\\';
}

// Reads the characters of a narrow text one by one.
class NarrowReader {
public:
    NarrowReader(const char* text, std::size_t length) noexcept : m_At(text), m_Left(length) {}

    bool Next(wchar_t& character) noexcept {
        if (m_Left == 0) return false;
        if (const auto byte = static_cast<unsigned char>(*m_At); Is_Plain(byte)) {
            character = byte;
            ++m_At;
            --m_Left;
            return true;
        }
        std::size_t used = std::mbrtowc(&character, m_At, m_Left, &m_State);
        if (used > m_Left || character > kLastCharacter) {  // not valid, or cut off at the end
            m_State = {};
            character = static_cast<wchar_t>(kLoneBase + static_cast<unsigned char>(*m_At));
            used = 1;
        }
        if (used == 0) used = 1;  // a NUL character
        m_At += used;
        m_Left -= used;
        return true;
    }

private:
    const char* m_At;
    std::size_t m_Left;
    std::mbstate_t m_State = {};
};

// The bytes of one wide character in the thread's encoding.
class NarrowCharacter {
public:
    NarrowCharacter() noexcept : m_Is_Utf8(std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0) {}

    // False: the encoding lacks the character, and `replacement` stands for it.
    bool Set(wchar_t character, char replacement) noexcept {
        if (Is_Plain(character)) {
            Set_Byte(static_cast<char>(character));
            return true;
        }
        if (character >= kFirstLoneUnit && character <= kLastLoneUnit) {
            Set_Byte(static_cast<char>(character - kLoneBase));
            return true;
        }
        if (m_Is_Utf8 && Is_Short(character)) {
            Set_Utf8(static_cast<unsigned>(character));
            return true;
        }
        std::mbstate_t state = {};
        m_Length = std::wcrtomb(m_Bytes, character, &state);
        if (m_Length <= sizeof(m_Bytes) && character <= kLastCharacter) return true;
        Set_Byte(replacement);
        return false;
    }

    const char* Bytes() const noexcept { return m_Bytes; }
    std::size_t Length() const noexcept { return m_Length; }

private:
    void Set_Byte(char byte) noexcept {
        m_Bytes[0] = byte;
        m_Length = 1;
    }

    // Of two or three bytes; most characters are, and the C library takes long for each.
    static constexpr bool Is_Short(wchar_t character) noexcept {
        return character >= 0x80 && character <= 0xFFFF && (character & 0xF800) != 0xD800;
    }
    void Set_Utf8(unsigned character) noexcept {
        m_Length = 0;
        if (character < 0x800) {
            m_Bytes[m_Length++] = static_cast<char>(0xC0 | character >> 6);
        } else {
            m_Bytes[m_Length++] = static_cast<char>(0xE0 | character >> 12);
            m_Bytes[m_Length++] = static_cast<char>(0x80 | (character >> 6 & 0x3F));
        }
        m_Bytes[m_Length++] = static_cast<char>(0x80 | (character & 0x3F));
    }

    bool m_Is_Utf8;
    char m_Bytes[MB_LEN_MAX];
    std::size_t m_Length = 0;
};

// Takes the units of the result, or only counts them.
template <class Unit>
class Output {
public:
    Output(Unit* target, int room) noexcept : m_Target(target), m_Room(room) {}

    // False: they do not fit. Units that belong together are written together.
    bool Put(const Unit* units, std::size_t count) noexcept {
        const std::size_t limit = m_Room == 0 ? INT_MAX : static_cast<std::size_t>(m_Room);
        if (count > limit - m_Count) return false;
        if (m_Room != 0) std::memcpy(m_Target + m_Count, units, count * sizeof(Unit));
        m_Count += count;
        return true;
    }

    int Count() const noexcept { return static_cast<int>(m_Count); }

private:
    Unit* m_Target;
    int m_Room;
    std::size_t m_Count = 0;
};

int Refuse(DWORD error) noexcept {
    SetLastError(error);
    return 0;
}

// The error of what every call must hold to, ERROR_SUCCESS when it does.
DWORD Check(UINT code_page, DWORD flags, const void* source, int length, const void* target,
            int room) noexcept {
    const bool known = code_page == CP_ACP || code_page == CP_THREAD_ACP;
    if (!known || !source || length == 0 || room < 0) return ERROR_INVALID_PARAMETER;
    if (room != 0 && (!target || target == source)) return ERROR_INVALID_PARAMETER;
    return flags == 0 ? ERROR_SUCCESS : ERROR_INVALID_FLAGS;
}

}  // namespace

int MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR source, int length, LPWSTR target,
                        int room) noexcept {
    const DWORD error = Check(code_page, flags, source, length, target, room);
    if (error != ERROR_SUCCESS) return Refuse(error);
    NarrowReader reader(source,
                        length < 0 ? std::strlen(source) + 1 : static_cast<std::size_t>(length));
    Output<wchar_t> output(target, room);
    for (wchar_t character; reader.Next(character);)
        if (!output.Put(&character, 1)) return Refuse(ERROR_INSUFFICIENT_BUFFER);
    return output.Count();
}

int WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR source, int length, LPSTR target,
                        int room, LPCSTR replacement, BOOL* replaced) noexcept {
    const DWORD error = Check(code_page, flags, source, length, target, room);
    if (error != ERROR_SUCCESS) return Refuse(error);
    const wchar_t* const end =
        source + (length < 0 ? std::wcslen(source) + 1 : static_cast<std::size_t>(length));
    const char substitute = replacement ? *replacement : '?';
    Output<char> output(target, room);
    NarrowCharacter character;
    if (replaced) *replaced = FALSE;
    for (const wchar_t* at = source; at != end; ++at) {
        if (!character.Set(*at, substitute) && replaced) *replaced = TRUE;
        if (!output.Put(character.Bytes(), character.Length()))
            return Refuse(ERROR_INSUFFICIENT_BUFFER);
    }
    return output.Count();
}
