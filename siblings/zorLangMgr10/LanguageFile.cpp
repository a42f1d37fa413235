#include "LanguageFile.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

#include "WholeFile.h"

namespace rv {
namespace {

constexpr std::string_view kApplicationName = "app";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool Is_Blank(char c) noexcept {
    return c == ' ' || c == '\t';
}

int Hex_Digit(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// The length of the character that begins there, of more than one byte; 0 when it is none.
std::size_t Character_Length(const char* at, const char* end) noexcept {
    const auto byte = [at](std::size_t i) { return static_cast<unsigned char>(at[i]); };
    const std::size_t length = byte(0) < 0xC2   ? 0
                               : byte(0) < 0xE0 ? 2
                               : byte(0) < 0xF0 ? 3
                               : byte(0) < 0xF5 ? 4
                                                : 0;
    if (length == 0 || static_cast<std::size_t>(end - at) < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    // Longer than need be, half of a pair, or behind the last character that there is.
    const bool wrong = (byte(0) == 0xE0 && byte(1) < 0xA0) || (byte(0) == 0xED && byte(1) > 0x9F) ||
                       (byte(0) == 0xF0 && byte(1) < 0x90) || (byte(0) == 0xF4 && byte(1) > 0x8F);
    return wrong ? 0 : length;
}

// The first byte that is not part of UTF-8 text, or is NUL; null when there is none.
const char* Find_Invalid(const char* at, const char* end) noexcept {
    while (at != end) {
        std::uint64_t eight;
        if (end - at >= 8) {
            std::memcpy(&eight, at, 8);
            constexpr std::uint64_t kHigh = 0x8080808080808080, kOnes = 0x0101010101010101;
            // The high bit of a byte above ASCII, and in the difference, that of a NUL.
            const std::uint64_t found = (eight | (eight - kOnes)) & kHigh;
            if (found == 0) {
                at += 8;
                continue;
            }
            if constexpr (std::endian::native == std::endian::little)
                at += std::countr_zero(found) / 8;
        }
        const auto first = static_cast<unsigned char>(*at);
        const std::size_t length = first < 0x80 ? first != 0 : Character_Length(at, end);
        if (length == 0) return at;
        at += length;
    }
    return nullptr;
}

}  // namespace

// One walk through the bytes, in which texts become what they stand for, in place.
class LanguageFile::Parser {
public:
    Parser(char* begin, std::size_t size, Entries& entries)
        : m_Begin(begin), m_At(begin), m_End(begin + size), m_Entries(entries) {}

    // Null, or what is wrong.
    const char* Parse() {
        if (m_Begin == m_End) return nullptr;
        if (const char* const invalid = Find_Invalid(m_Begin, m_End)) {
            m_At = invalid;
            return *invalid ? "is not in UTF-8; save the file in this encoding"
                            : "has a NUL character; take another copy of the file";
        }
        if (m_End[-1] != '\n') {
            m_At = m_End;
            return "has no line end; the file may be cut off: take a whole copy, or end the line";
        }
        if (std::string_view(m_Begin, Size()).starts_with(kByteOrderMark))
            m_At += kByteOrderMark.size();
        while (m_At != m_End) {
            const char* const line = m_At;
            const char* const wrong = Parse_Line();
            if (wrong) {
                m_At = line;
                return wrong;
            }
        }
        if (const char* const wrong = Sort()) return wrong;
        // Only now, since a fault is looked for by the line ends.
        for (Entry& entry : m_Entries)
            if (entry.length & kEscaped) Unescape(entry);
        return nullptr;
    }

    // Of the fault.
    std::size_t Line() const {
        return 1 + static_cast<std::size_t>(std::count<const char*>(m_Begin, m_At, '\n'));
    }

private:
    // Marks the length of a text until it is what it stands for.
    static constexpr ULONG kEscaped = 0x80000000;

    std::size_t Size() const noexcept { return static_cast<std::size_t>(m_End - m_Begin); }

    const char* Parse_Line() {
        const char* const next = static_cast<const char*>(std::memchr(
                                     m_At, '\n', static_cast<std::size_t>(m_End - m_At))) +
                                 1;
        const char* end = next - 1;
        if (end != m_At && end[-1] == '\r') --end;
        while (end != m_At && Is_Blank(end[-1]))
            --end;
        Skip_Blanks(end);
        if (m_At != end && *m_At != '#') {
            const char* const wrong = Parse_Item(end);
            if (wrong) return wrong;
        }
        m_At = next;
        return nullptr;
    }

    const char* Parse_Item(const char* end) {
        constexpr const char* kNoItem =
            "is no item; write MODULE/STRING = TEXT, or a # in front of a comment";
        ULONG module = kApplicationModule, string = 0;
        if (static_cast<std::size_t>(end - m_At) > kApplicationName.size() &&
            std::memcmp(m_At, kApplicationName.data(), kApplicationName.size()) == 0)
            m_At += kApplicationName.size();
        else if (!Parse_Number(end, module))
            return kNoItem;
        if (m_At == end || *m_At++ != '/' || !Parse_Number(end, string)) return kNoItem;
        Skip_Blanks(end);
        if (m_At == end || *m_At++ != '=') return kNoItem;
        Skip_Blanks(end);
        const auto start = static_cast<ULONG>(m_At - m_Begin);
        auto length = static_cast<ULONG>(end - m_At);
        if (std::memchr(m_At, '\\', length)) {
            if (!Are_Escapes(m_At, end))
                return "has a \\ that stands for nothing; write \\\\ for a backslash";
            length |= kEscaped;
        }
        m_Entries.push_back({ULONGLONG{module} << 32 | string, start, length});
        return nullptr;
    }

    void Skip_Blanks(const char* end) noexcept {
        while (m_At != end && Is_Blank(*m_At))
            ++m_At;
    }

    // A number of 32 bits, in decimal digits.
    bool Parse_Number(const char* end, ULONG& number) noexcept {
        const char* const first = m_At;
        ULONGLONG value = 0;
        for (; m_At != end && *m_At >= '0' && *m_At <= '9' && value <= 0xFFFFFFFF; ++m_At)
            value = value * 10 + static_cast<ULONGLONG>(*m_At - '0');
        number = static_cast<ULONG>(value);
        return m_At != first && value <= 0xFFFFFFFF;
    }

    static bool Are_Escapes(const char* at, const char* end) noexcept {
        while (at != end) {
            char c = *at++;
            if (c == '\\' && !Read_Escape(at, end, c)) return false;
        }
        return true;
    }

    void Unescape(Entry& entry) noexcept {
        entry.length &= ~kEscaped;
        char* to = m_Begin + entry.start;
        const char* const end = to + entry.length;
        for (const char* from = to; from != end;) {
            char c = *from++;
            if (c == '\\') static_cast<void>(Read_Escape(from, end, c));
            *to++ = c;
        }
        entry.length = static_cast<ULONG>(to - m_Begin) - entry.start;
    }

    static bool Read_Escape(const char*& from, const char* end, char& c) noexcept {
        if (from == end) return false;
        switch (*from++) {
            case 'n':
                c = '\n';
                return true;
            case 'r':
                c = '\r';
                return true;
            case 't':
                c = '\t';
                return true;
            case 's':
                c = ' ';
                return true;
            case '\\':
                return true;
            case 'x':
                break;
            default:
                return false;
        }
        if (end - from < 2) return false;
        const int high = Hex_Digit(from[0]), low = Hex_Digit(from[1]);
        from += 2;
        c = static_cast<char>(high * 16 + low);
        return high >= 0 && high < 8 && low >= 0;
    }

    const char* Sort() {
        const auto by_key = [](const Entry& left, const Entry& right) {
            return left.key < right.key;
        };
        // As it is in a file that a tool has written.
        if (!std::ranges::is_sorted(m_Entries, by_key)) std::ranges::sort(m_Entries, by_key);
        const auto same = std::ranges::adjacent_find(m_Entries, {}, &Entry::key);
        if (same == m_Entries.end()) return nullptr;
        m_At = m_Begin + std::max(same->start, same[1].start);
        return "is there for the second time; take one of the two out";
    }

    char* const m_Begin;
    const char* m_At;
    const char* const m_End;
    Entries& m_Entries;
};

LanguageFile::Result LanguageFile::Read(const char* path, CString& fault) {
    HeapText bytes;
    std::size_t size = 0;
    switch (Read_Whole_File(path, bytes, size, fault)) {
        case FileResult::kMissing:
            return Result::kMissing;
        case FileResult::kRefused:
            return Result::kRefused;
        default:
            return Parse(std::move(bytes), size, path, fault);
    }
}

LanguageFile::Result LanguageFile::Parse(HeapText bytes, std::size_t size, const char* name,
                                         CString& fault) {
    Entries entries;
    // Few lines are shorter; room that is not used costs nothing.
    constexpr std::size_t kShortLine = 24;
    entries.reserve(size / kShortLine);
    Parser parser(bytes.get(), size, entries);
    if (const char* const wrong = parser.Parse()) {
        fault.Format("%s:%zu: the line %s", name, parser.Line(), wrong);
        return Result::kRefused;
    }
    m_Bytes = std::move(bytes);
    m_Entries = std::move(entries);
    return Result::kRead;
}

LanguageFile::Item LanguageFile::At(std::size_t index) const noexcept {
    const Entry& entry = m_Entries[index];
    return {static_cast<ULONG>(entry.key >> 32), static_cast<ULONG>(entry.key), Text_Of(entry)};
}

std::string_view LanguageFile::Find(ULONG module, ULONG string) const noexcept {
    const ULONGLONG key = ULONGLONG{module} << 32 | string;
    const auto found = std::ranges::lower_bound(m_Entries, key, {}, &Entry::key);
    if (found == m_Entries.end() || found->key != key) return {};
    return Text_Of(*found);
}

CString Escaped_Text(std::string_view text) {
    CString escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool at_edge = i == 0 || i + 1 == text.size();
        if (c == '\n') {
            escaped += "\\n";
        } else if (c == '\r') {
            escaped += "\\r";
        } else if (c == '\t') {
            escaped += "\\t";
        } else if (c == '\\') {
            escaped += "\\\\";
        } else if (c == ' ' && at_edge) {
            escaped += "\\s";
        } else if (static_cast<unsigned char>(c) < 0x20) {
            CString code;
            code.Format("\\x%02x", static_cast<unsigned char>(c));
            escaped += code;
        } else {
            escaped += c;
        }
    }
    return escaped;
}

CString Module_Name(ULONG module) {
    CString name(kApplicationName.data());
    if (module != kApplicationModule) name.Format("%u", static_cast<unsigned>(module));
    return name;
}

}  // namespace rv
