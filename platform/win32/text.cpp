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

// The encodings whose characters are read and written here; the C library takes long for each.
enum class Encoding { kAscii, kUtf8, kOther };

Encoding Encoding_Of_Thread() noexcept {
    const char* const name = nl_langinfo(CODESET);
    if (std::strcmp(name, "UTF-8") == 0) return Encoding::kUtf8;
    return std::strcmp(name, "ANSI_X3.4-1968") == 0 ? Encoding::kAscii : Encoding::kOther;
}

// Characters of two or three bytes in UTF-8, as most are.
constexpr bool Is_Short_Utf8(unsigned character) noexcept {
    return character >= 0x80 && character <= 0xFFFF && (character & 0xF800) != 0xD800;
}

// Reads the characters of a narrow text one by one.
class NarrowReader {
public:
    NarrowReader(const char* text, std::size_t length) noexcept
        : m_At(reinterpret_cast<const unsigned char*>(text)), m_Left(length) {}

    bool Next(wchar_t& character) noexcept {
        if (m_Left == 0) return false;
        if (Is_Plain(*m_At) || (*m_At < 0x80 && m_Encoding != Encoding::kOther)) {
            character = *m_At;
            Skip(1);
        } else if (m_Encoding == Encoding::kAscii) {
            character = kLoneBase + *m_At;
            Skip(1);
        } else if (m_Encoding != Encoding::kUtf8 || !Read_Short_Utf8(character)) {
            Read_Any(character);
        }
        return true;
    }

private:
    void Skip(std::size_t count) noexcept {
        m_At += count;
        m_Left -= count;
    }

    // The lower bits of the byte at `index`, beyond 0xFF when it does not go on with a character.
    unsigned Continuation(std::size_t index) const noexcept {
        return index < m_Left && (m_At[index] & 0xC0) == 0x80 ? m_At[index] & 0x3FU : 0x10000U;
    }

    bool Read_Short_Utf8(wchar_t& character) noexcept {
        const bool has_three = (*m_At & 0xF0) == 0xE0;
        if (!has_three && (*m_At & 0xE0) != 0xC0) return false;
        const unsigned number = has_three
                                    ? (*m_At & 0x0FU) << 12 | Continuation(1) << 6 | Continuation(2)
                                    : (*m_At & 0x1FU) << 6 | Continuation(1);
        // Not one that has a shorter form.
        if (!Is_Short_Utf8(number) || has_three != (number >= 0x800)) return false;
        character = static_cast<wchar_t>(number);
        Skip(has_three ? 3 : 2);
        return true;
    }

    void Read_Any(wchar_t& character) noexcept {
        std::size_t used =
            std::mbrtowc(&character, reinterpret_cast<const char*>(m_At), m_Left, &m_State);
        if (used > m_Left || character > kLastCharacter) {  // not valid, or cut off at the end
            m_State = {};
            character = kLoneBase + *m_At;
            used = 1;
        }
        Skip(used == 0 ? 1 : used);  // a NUL character counts as none
    }

    const unsigned char* m_At;
    std::size_t m_Left;
    const Encoding m_Encoding = Encoding_Of_Thread();
    std::mbstate_t m_State = {};
};

// The bytes of one wide character in the thread's encoding.
class NarrowCharacter {
public:
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
        const auto number = static_cast<unsigned>(character);
        if (m_Encoding == Encoding::kUtf8 && Is_Short_Utf8(number)) {
            Set_Short_Utf8(number);
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

    void Set_Short_Utf8(unsigned character) noexcept {
        m_Length = 0;
        if (character < 0x800) {
            m_Bytes[m_Length++] = static_cast<char>(0xC0 | character >> 6);
        } else {
            m_Bytes[m_Length++] = static_cast<char>(0xE0 | character >> 12);
            m_Bytes[m_Length++] = static_cast<char>(0x80 | (character >> 6 & 0x3F));
        }
        m_Bytes[m_Length++] = static_cast<char>(0x80 | (character & 0x3F));
    }

    const Encoding m_Encoding = Encoding_Of_Thread();
    char m_Bytes[MB_LEN_MAX];
    std::size_t m_Length = 0;
};

// Takes the units of the result, or only counts them.
template <class Unit>
class Output {
public:
    Output(Unit* target, int room) noexcept
        : m_Target(target), m_Limit(room == 0 ? INT_MAX : static_cast<std::size_t>(room)) {}

    // False: they do not fit. Units that belong together are written together.
    bool Put(const Unit* units, std::size_t count) noexcept {
        if (count > m_Limit - m_Count) return false;
        if (m_Target)
            for (std::size_t i = 0; i < count; ++i)
                m_Target[m_Count + i] = units[i];
        m_Count += count;
        return true;
    }

    int Count() const noexcept { return static_cast<int>(m_Count); }

private:
    Unit* const m_Target;  // null to count
    const std::size_t m_Limit;
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
    Output<wchar_t> output(room == 0 ? nullptr : target, room);
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
    Output<char> output(room == 0 ? nullptr : target, room);
    NarrowCharacter character;
    if (replaced) *replaced = FALSE;
    for (const wchar_t* at = source; at != end; ++at) {
        if (!character.Set(*at, substitute) && replaced) *replaced = TRUE;
        if (!output.Put(character.Bytes(), character.Length()))
            return Refuse(ERROR_INSUFFICIENT_BUFFER);
    }
    return output.Count();
}
