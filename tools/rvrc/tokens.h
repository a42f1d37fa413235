// The words of a resource script.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "script.h"

namespace rv_rc {

enum class TokenKind { kEnd, kWord, kNumber, kText, kSign };

struct Token {
    TokenKind kind = TokenKind::kEnd;
    std::string text;  // of a text, what stands between the quotation marks
    std::uint32_t number = 0;
};

// Gives one token after the other.
class Tokens {
public:
    Tokens(std::string_view source, const std::string& name) : m_Rest(source), m_File(name) {
        m_Files.insert(name);
        Advance();
    }

    const Token& Current() const { return m_Token; }
    Token Take();
    // Takes the current token if it is the word, or the sign.
    bool Skip(std::string_view text);

    [[noreturn]] void Fail(const std::string& what) const;
    // The current token, as a part of a message.
    std::string Shown() const;

    const std::string& File() const { return m_File; }
    const std::set<std::string>& Files() const { return m_Files; }

private:
    void Advance();
    void Skip_Blanks();
    void Read_Marker();
    void Read_Number();
    void Read_Text();
    std::string Escape();
    std::uint32_t Digits(int base, std::size_t most);
    bool Begins(std::string_view text) const { return m_Rest.substr(0, text.size()) == text; }

    std::string_view m_Rest;
    std::string m_File;
    int m_Line = 1;
    bool m_AtLineStart = true;
    Token m_Token;
    int m_TokenLine = 1;
    std::set<std::string> m_Files;
};

}  // namespace rv_rc
