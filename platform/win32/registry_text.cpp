#include "registry_text.h"

#include <algorithm>
#include <cstdio>

#include "registry.h"

namespace rv::registry {
namespace {

using std::string_view;

constexpr string_view kHeader = "Windows Registry Editor Version 5.00";
constexpr string_view kPromise = "; Written anew at each change. Whole if the last line is: ; end";
constexpr string_view kEnd = "; end";

constexpr string_view kBlanks = " \t";

string_view Trimmed(string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// Whether the bytes of such a value stand in a file as UTF-16.
constexpr bool Is_Wide(DWORD type) noexcept {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

constexpr unsigned kFirstHigh = 0xD800, kFirstLow = 0xDC00, kBehindLow = 0xE000;
constexpr unsigned kFirstLoneByte = kFirstLow + 0x80, kLastLoneByte = kFirstLow + 0xFF;

void Add_Utf8(Text& text, unsigned character) {
    const auto add = [&](unsigned byte) { text += static_cast<char>(byte); };
    if (character >= kFirstLoneByte && character <= kLastLoneByte)
        return add(character - kFirstLow);
    if (character < 0x80) return add(character);
    const int behind = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    add((0x7F80U >> behind & 0xFF) | character >> 6 * behind);
    for (int i = behind; i-- > 0;)
        add(0x80 | (character >> 6 * i & 0x3F));
}

// Bytes of UTF-16 made UTF-8. What is no half of a pair is kept as if it were a character.
Text Narrow(string_view wide) {
    Text text;
    const auto unit_at = [wide](std::size_t at) -> unsigned {
        if (at + 1 >= wide.size()) return 0;
        const unsigned low = static_cast<unsigned char>(wide[at]);
        return low | static_cast<unsigned>(static_cast<unsigned char>(wide[at + 1])) << 8;
    };
    for (std::size_t at = 0; at < wide.size(); at += 2) {
        unsigned unit = unit_at(at);
        const unsigned low = unit_at(at + 2);
        if (unit >= kFirstHigh && unit < kFirstLow && low >= kFirstLow && low < kBehindLow) {
            unit = 0x10000 + ((unit - kFirstHigh) << 10) + (low - kFirstLow);
            at += 2;
        }
        Add_Utf8(text, unit);
    }
    return text;
}

// Takes the next character of UTF-8 off a text that is not empty; a byte that is none of it is a
// lone unit.
unsigned Take_Character(string_view& text) noexcept {
    const auto byte = [text](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    const unsigned first = byte(0);
    const std::size_t behind = first < 0xC2   ? 0
                               : first < 0xE0 ? 1
                               : first < 0xF0 ? 2
                               : first < 0xF5 ? 3
                                              : 0;
    unsigned character = behind == 0 ? first : first & (0x3FU >> behind);
    for (std::size_t at = 1; at <= behind; ++at)
        character = (byte(at) & 0xC0) == 0x80 ? character << 6 | (byte(at) & 0x3F) : ~0U;
    const bool is_longer_than_need_be =
        (behind == 2 && character < 0x800) || (behind == 3 && character < 0x10000);
    const bool is_half = character >= kFirstHigh && character < kBehindLow;
    const bool is_none =
        behind == 0 ? first >= 0x80 : is_longer_than_need_be || is_half || character > 0x10FFFF;
    text.remove_prefix(is_none ? 1 : behind + 1);
    return is_none ? kFirstLow + first : character;
}

class Reader {
public:
    Reader(string_view text, Key& top) noexcept : m_Rest(text), m_Top(top) {}

    Fault Read() {
        const char* const what = Read_All();
        return {m_Line, what};
    }

private:
    const char* Read_All() {
        const bool is_wide = m_Rest.starts_with("\xFF\xFE");
        constexpr string_view kByteOrderMark = "\xEF\xBB\xBF";
        if (m_Rest.starts_with(kByteOrderMark)) m_Rest.remove_prefix(kByteOrderMark.size());
        const char* wrong = Take_Line();
        if (is_wide) return "is in UTF-16; save the file in UTF-8";
        if (wrong) return wrong;
        if (m_At != kHeader)
            return "is not \"Windows Registry Editor Version 5.00\"; take a file that begins so";
        while (!m_Rest.empty()) {
            wrong = Take_Line();
            if (!wrong) wrong = Read_Line();
            if (wrong) return wrong;
        }
        if (m_IsPromised && !m_IsWhole)
            return "is not \"; end\"; the file may be cut off: take a whole copy, or end it so";
        return m_HasKeys ? nullptr
                         : "has no key behind it; the file may be cut off: take a whole copy";
    }

    // Puts the next line into m_At.
    const char* Take_Line() noexcept {
        ++m_Line;
        const std::size_t end = m_Rest.find('\n');
        m_At = Trimmed(m_Rest.substr(0, end));
        if (end == m_Rest.npos)
            return "has no line end; the file may be cut off: take a whole copy, or end the line";
        m_Rest.remove_prefix(end + 1);
        if (m_At.ends_with('\r')) m_At = Trimmed(m_At.substr(0, m_At.size() - 1));
        return m_At.find('\0') == m_At.npos ? nullptr
                                            : "has a NUL character; take another copy of the file";
    }

    const char* Read_Line() {
        if (m_Line == 2) m_IsPromised = m_At == kPromise;
        m_IsWhole = m_IsWhole || m_At == kEnd;
        if (m_At.empty() || m_At.starts_with(';')) return nullptr;
        return m_At.starts_with('[') ? Read_Key() : Read_Value();
    }

    const char* Read_Key() {
        if (!m_At.ends_with(']')) return "has no bracket at its end; write [KEY]";
        m_At = m_At.substr(1, m_At.size() - 2);
        const bool removes = m_At.starts_with('-');
        if (removes) m_At.remove_prefix(1);
        const string_view root = Root_Path(Take_Level(m_At));
        if (!root.data())
            return "begins with no root of this registry; take HKEY_LOCAL_MACHINE, "
                   "HKEY_CURRENT_USER or HKEY_CLASSES_ROOT";
        if (!Is_Path(m_At))
            return "has a level that is empty or of more than 255 bytes, or more than 512 levels; "
                   "shorten it";
        m_HasKeys = true;
        Key& start = Make(m_Top, root);
        m_Key = removes ? nullptr : &Make(start, m_At);
        if (!removes) return nullptr;
        if (m_At.empty()) return "takes a root away; name a key below it";
        Remove(start, m_At);
        return nullptr;
    }

    const char* Read_Value() {
        if (!m_HasKeys) return "is in no key; put one in brackets above it";
        Text name;
        if (m_At.starts_with('@'))
            m_At.remove_prefix(1);
        else if (!m_At.starts_with('"'))
            return "is neither key nor value; correct it, or put a semicolon in front of it";
        else if (const char* const wrong = Read_Quoted(name))
            return wrong;
        if (name.size() > kLongestValueName)
            return "has a name of more than 16383 bytes; shorten it";
        m_At = Trimmed(m_At);
        if (!m_At.starts_with('=')) return "has no = behind the name; write \"NAME\"=DATA";
        m_At = Trimmed(m_At.substr(1));
        return m_At == "-" ? Remove_Value(name) : Read_Data(std::move(name));
    }

    const char* Remove_Value(const Text& name) noexcept {
        if (m_Key) m_Key->values.erase(name);
        return nullptr;
    }

    const char* Read_Data(Text&& name) {
        Value value;
        const char* const wrong = Read_Data(value);
        if (!wrong && m_Key) m_Key->values.insert_or_assign(std::move(name), std::move(value));
        return wrong;
    }

    const char* Read_Data(Value& value) {
        if (m_At.starts_with('"')) {
            value.type = REG_SZ;
            if (const char* const wrong = Read_Quoted(value.data)) return wrong;
            value.data += '\0';
            return m_At.empty() || Trimmed(m_At).starts_with(';')
                       ? nullptr
                       : "goes on behind the text; write \\\" for a quotation mark in it";
        }
        if (Skip("dword:")) return Read_Number(value);
        value.type = REG_BINARY;
        if (Skip("hex(")) {
            if (!Take_Number(value.type) || !Skip(")"))
                return "has no number in hex(); write hex(7): or the like";
            if (!Skip(":")) return "has no colon behind hex(); write hex(7): or the like";
        } else if (!Skip("hex:")) {
            return "has no data; write \"TEXT\", dword:, hex: or hex(TYPE):";
        }
        return Read_Bytes(value);
    }

    bool Skip(string_view word) noexcept {
        if (!m_At.starts_with(word)) return false;
        m_At.remove_prefix(word.size());
        return true;
    }

    // Reads what stands in quotation marks.
    const char* Read_Quoted(Text& text) {
        m_At.remove_prefix(1);
        for (;;) {
            const std::size_t end = m_At.find_first_of("\"\\");
            if (end == m_At.npos) return "has no quotation mark at the end of a text; add it";
            text += m_At.substr(0, end);
            const char found = m_At[end];
            m_At.remove_prefix(end + 1);
            if (found == '"') return nullptr;
            if (!m_At.starts_with('"') && !m_At.starts_with('\\'))
                return "has a \\ that stands for nothing; write \\\\ for a backslash";
            text += m_At.front();
            m_At.remove_prefix(1);
        }
    }

    // Reads up to `most` digits of base 16.
    bool Take_Number(DWORD& number, std::size_t most = 8) noexcept {
        constexpr string_view kDigits = "0123456789abcdefABCDEF";
        const std::size_t count = std::min(m_At.find_first_not_of(kDigits), m_At.size());
        if (count == 0 || count > most) return false;
        number = 0;
        for (const char digit : m_At.substr(0, count)) {
            const std::size_t at = kDigits.find(digit);
            number = number << 4 | static_cast<DWORD>(at < 16 ? at : at - 6);
        }
        m_At.remove_prefix(count);
        return true;
    }

    const char* Read_Number(Value& value) {
        DWORD number;
        if (!Take_Number(number) || !(m_At.empty() || Trimmed(m_At).starts_with(';')))
            return "has no number of up to 8 digits of base 16; correct it";
        value.type = REG_DWORD;
        for (int i = 0; i < 4; ++i)
            value.data += static_cast<char>(number >> 8 * i);
        return nullptr;
    }

    const char* Read_Bytes(Value& value) {
        constexpr const char* kNoByte =
            "has no bytes of two digits with commas between; correct it";
        DWORD byte;
        for (m_At = Trimmed(m_At); !m_At.empty(); m_At = Trimmed(m_At)) {
            if (m_At == "\\") {
                if (const char* const wrong = Take_Line()) return wrong;
                if (m_At.empty() || m_At.starts_with(';')) return kNoByte;
                continue;
            }
            if (!Take_Number(byte, 2)) return kNoByte;
            value.data += static_cast<char>(byte);
            m_At = Trimmed(m_At);
            if (m_At.empty()) break;
            if (!Skip(",") || Trimmed(m_At).empty()) return kNoByte;
        }
        if (!Is_Wide(value.type)) return nullptr;
        if (value.data.size() % 2 != 0) return "ends within a character; it takes two bytes each";
        value.data = Narrow(value.data);
        return nullptr;
    }

    string_view m_Rest;
    string_view m_At;  // what is left of the line
    std::size_t m_Line = 0;
    Key& m_Top;
    Key* m_Key = nullptr;  // null where values count for nothing
    bool m_HasKeys = false;
    bool m_IsPromised = false;
    bool m_IsWhole = false;
};

class Writer {
public:
    Text Written(const Key& top) {
        Add(kHeader);
        Add("\n");
        Add(kPromise);
        Add("\n");
        Write_Keys(top);
        Add("\n");
        Add(kEnd);
        Add("\n");
        return std::move(m_Text);
    }

private:
    void Add(string_view text) { m_Text += text; }

    void Write_Keys(const Key& above) {
        const std::size_t length = m_Path.size();
        for (const auto& [name, key] : above.keys) {
            if (length != 0) m_Path += '\\';
            m_Path += name;
            Write_Key(key);
            Write_Keys(key);
            m_Path.resize(length);
        }
    }

    void Write_Key(const Key& key) {
        Add("\n[");
        Add(m_Path);
        Add("]\n");
        for (const auto& [name, value] : key.values) {
            m_LineStart = m_Text.size();
            if (name.empty())
                Add("@");
            else
                Write_Quoted(name);
            Add("=");
            Write_Data(value);
            Add("\n");
        }
    }

    void Write_Quoted(string_view text) {
        Add("\"");
        for (std::size_t end; (end = text.find_first_of("\"\\")) != text.npos;) {
            Add(text.substr(0, end));
            Add("\\");
            Add(text.substr(end, 1));
            text.remove_prefix(end + 1);
        }
        Add(text);
        Add("\"");
    }

    void Write_Data(const Value& value) {
        // A text of one line with its terminator.
        if (value.type == REG_SZ && !value.data.empty() &&
            value.data.find_first_of(string_view("\r\n\0", 3)) == value.data.size() - 1 &&
            value.data.back() == '\0')
            return Write_Quoted(string_view(value.data).substr(0, value.data.size() - 1));
        if (value.type == REG_DWORD && value.data.size() == 4) return Write_Number(value.data);
        if (value.type == REG_BINARY)
            Add("hex:");
        else
            Add_Format("hex(%x):", value.type);
        Is_Wide(value.type) ? Write_Wide(value.data) : Write_Bytes(value.data);
    }

    void Write_Number(string_view bytes) {
        Add("dword:");
        for (std::size_t i = bytes.size(); i-- > 0;)
            Add_Format("%02x", static_cast<unsigned char>(bytes[i]));
    }

    void Write_Bytes(string_view bytes) {
        for (const char byte : bytes)
            Write_Byte(static_cast<unsigned char>(byte));
    }

    void Write_Wide(string_view text) {
        const auto write = [this](unsigned unit) {
            Write_Byte(unit & 0xFF);
            Write_Byte(unit >> 8);
        };
        while (!text.empty()) {
            const unsigned character = Take_Character(text);
            if (character < 0x10000) {
                write(character);
                continue;
            }
            write(kFirstHigh + ((character - 0x10000) >> 10));
            write(kFirstLow + (character & 0x3FF));
        }
    }

    void Write_Byte(unsigned byte) {
        constexpr std::size_t kLongestLine = 76;
        if (m_Text.back() != ':') Add(",");
        if (m_Text.size() - m_LineStart > kLongestLine) {
            Add("\\\n  ");
            m_LineStart = m_Text.size() - 2;
        }
        Add_Format("%02x", byte);
    }

    void Add_Format(const char* format, unsigned number) {
        char text[24];
        std::snprintf(text, sizeof text, format, number);
        Add(text);
    }

    Text m_Text;
    Text m_Path;
    std::size_t m_LineStart = 0;
};

}  // namespace

Fault Read_Text(string_view text, Key& top) {
    return Reader(text, top).Read();
}

Text Written_Text(const Key& top) {
    return Writer().Written(top);
}

}  // namespace rv::registry
