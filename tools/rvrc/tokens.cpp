#include "tokens.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace rv_rc {
namespace {

bool Is_Word_Character(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '.';
}

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

int Digit_Of(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    c = Upper(c);
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : 16;
}

std::string Utf8(std::uint32_t code) {
    if (code < 0x80) return {static_cast<char>(code)};
    if (code < 0x800)
        return {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
    return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
}

}  // namespace

Token Tokens::Take() {
    Token taken = std::move(m_Token);
    Advance();
    return taken;
}

bool Tokens::Skip(std::string_view text) {
    if (m_Token.kind == TokenKind::kText || m_Token.text != text) return false;
    Advance();
    return true;
}

void Tokens::Fail(const std::string& what) const {
    throw ScriptError(m_File + ":" + std::to_string(m_TokenLine) + ": " + what);
}

std::string Tokens::Shown() const {
    switch (m_Token.kind) {
        case TokenKind::kEnd:
            return "the end of the file";
        case TokenKind::kText:
            return "a text";
        default:
            return "\"" + m_Token.text + "\"";
    }
}

// # 12 "file" flags
void Tokens::Read_Marker() {
    const std::string_view line = m_Rest.substr(0, m_Rest.find('\n'));
    const std::size_t digits = line.find_first_of("0123456789");
    const std::size_t open = line.find('"');
    const std::size_t close = line.find('"', open + 1);
    if (digits < open && close != line.npos) {
        std::from_chars(line.data() + digits, line.data() + open, m_Line);
        --m_Line;  // the line break behind it adds one
        const std::string_view file = line.substr(open + 1, close - open - 1);
        // The preprocessor's own words for what is no file stand in such brackets.
        if (!file.empty() && file.front() != '<') {
            m_File = file;
            m_Files.insert(m_File);
        }
    }
    m_Rest.remove_prefix(line.size());
}

void Tokens::Skip_Blanks() {
    while (!m_Rest.empty()) {
        const char c = m_Rest.front();
        if (c == '#' && m_AtLineStart) {
            Read_Marker();
        } else if (c == '\n') {
            ++m_Line;
            m_AtLineStart = true;
            m_Rest.remove_prefix(1);
        } else if (c == ' ' || c == '\t' || c == '\r' || c == '\f') {
            m_Rest.remove_prefix(1);
        } else {
            return;
        }
    }
}

void Tokens::Advance() {
    Skip_Blanks();
    m_AtLineStart = false;
    m_Token = {};
    m_TokenLine = m_Line;
    if (m_Rest.empty()) return;
    const char c = m_Rest.front();
    if (c >= '0' && c <= '9') return Read_Number();
    if (c == '"') return Read_Text();
    if ((c == 'L' || c == 'l') && m_Rest.substr(1, 1) == "\"") {
        m_Rest.remove_prefix(1);
        return Read_Text();
    }
    std::size_t length = 0;
    while (length < m_Rest.size() && Is_Word_Character(m_Rest[length]))
        ++length;
    m_Token.kind = length ? TokenKind::kWord : TokenKind::kSign;
    m_Token.text = m_Rest.substr(0, std::max<std::size_t>(length, 1));
    m_Rest.remove_prefix(m_Token.text.size());
}

void Tokens::Read_Number() {
    std::size_t length = 0;
    while (length < m_Rest.size() && Is_Word_Character(m_Rest[length]))
        ++length;
    m_Token.text = m_Rest.substr(0, length);
    m_Token.kind = TokenKind::kNumber;
    m_Rest.remove_prefix(length);
    std::string_view digits = m_Token.text;
    if (digits.back() == 'L' || digits.back() == 'l') digits.remove_suffix(1);
    int base = 10;
    if (digits.size() > 2 && Upper(digits[1]) == 'X') {
        base = 16;
        digits.remove_prefix(2);
    } else if (digits.size() > 1 && digits[0] == '0') {
        base = 8;
    }
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, m_Token.number, base);
    if (result.ec != std::errc() || result.ptr != end)
        Fail(Shown() + " is no number of 32 bits; write one as 12, 014 or 0x0C");
}

std::uint32_t Tokens::Digits(int base, std::size_t most) {
    std::uint32_t number = 0;
    for (; most > 0 && !m_Rest.empty() && Digit_Of(m_Rest.front()) < base; --most) {
        number = number * static_cast<std::uint32_t>(base) +
                 static_cast<std::uint32_t>(Digit_Of(m_Rest.front()));
        m_Rest.remove_prefix(1);
    }
    return number;
}

// What stands behind a backslash.
std::string Tokens::Escape() {
    const char c = m_Rest.empty() ? '\0' : m_Rest.front();
    if (Digit_Of(c) < 8) return Utf8(Digits(8, 3));
    m_Rest.remove_prefix(m_Rest.empty() ? 0 : 1);
    constexpr std::string_view kNames = "antr\\\"'", kCharacters = "\a\n\t\r\\\"'";
    if (Upper(c) == 'X') return Utf8(Digits(16, 4));
    if (const std::size_t at = kNames.find(c); at != kNames.npos) return {kCharacters[at]};
    Fail(std::string("the text has a \"\\") + c +
         "\", which is not known; write \\\\ for a backslash");
}

void Tokens::Read_Text() {
    m_Token.kind = TokenKind::kText;
    m_Rest.remove_prefix(1);
    for (;;) {
        const std::size_t plain = m_Rest.find_first_of("\"\\\n");
        m_Token.text += m_Rest.substr(0, plain);
        if (plain == m_Rest.npos || m_Rest[plain] == '\n')
            Fail("a text has no end; close it with a quotation mark on the same line");
        m_Rest.remove_prefix(plain + 1);
        if (m_Rest.data()[-1] == '\\') {
            m_Token.text += Escape();
        } else if (Begins("\"")) {
            m_Token.text += '"';
            m_Rest.remove_prefix(1);
        } else {
            return;
        }
    }
}

}  // namespace rv_rc
