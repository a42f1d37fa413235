// The forms of a locale's dates and times, as lists of fields, with the names and digits in them.
#pragma once

#include <locale.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace rv {

// What stands in a pattern.
enum class Field : std::uint8_t {
    kYear,
    kMonth,
    kDay,
    kMonthName,
    kWeekday,
    kHour,
    kHour12,
    kMinute,
    kSecond,
    kHalf,  // a.m. or p.m.
    kLiteral,
};

inline constexpr std::size_t kFields = 11;

// Without the blanks around it.
[[nodiscard]] std::string_view Trimmed(std::string_view text) noexcept;

using NameList = std::span<const std::string_view>;

struct PatternToken {
    Field field = Field::kLiteral;
    char padding = '0';          // of a number to two places; NUL for none
    bool own_digits = false;     // a number in the digits of the locale
    bool two_digits = false;     // a year that is cut where that is unambiguous
    bool era = false;            // a year in the count of the locale
    NameList names = {};         // of a month or weekday
    std::string_view text = {};  // of a literal
};

class Pattern {
public:
    static constexpr std::size_t kMostTokens = 24;

    bool Add(const PatternToken& token) noexcept {
        if (m_Count == kMostTokens) return false;
        m_Tokens[m_Count++] = token;
        return true;
    }
    PatternToken* Last() noexcept { return m_Count == 0 ? nullptr : &m_Tokens[m_Count - 1]; }
    void Remove_Last() noexcept { --m_Count; }
    void Replace(Field field, Field by) noexcept;
    void Clear() noexcept { m_Count = 0; }

    std::span<const PatternToken> Tokens() const noexcept { return {m_Tokens.data(), m_Count}; }
    std::size_t Count(Field field) const noexcept;

private:
    std::array<PatternToken, kMostTokens> m_Tokens;
    std::size_t m_Count = 0;
};

// The words of a locale. They stand in the locale's own memory.
struct LocaleWords {
    using Months = std::array<std::string_view, 12>;
    using Weekdays = std::array<std::string_view, 7>;

    // Long and short, as they stand beside a day, then alone.
    std::array<Months, 4> months;
    std::array<Weekdays, 2> weekdays;  // long and short, from Sunday
    std::array<std::string_view, 2> halves;

    // The numbers to 99 in the locale's own digits, and these digits one by one.
    bool has_digits = false;
    bool by_places = false;  // the numbers, too, are made of these digits
    std::array<std::string_view, 100> numbers;
    std::array<std::string_view, 10> digits;
    std::array<char, 2048> digit_text;
};

void Read_Words(locale_t locale, LocaleWords& words) noexcept;

// Takes a strftime format of the locale apart. A zone is left out. False: it has something that is
// not known here; the pattern is then unspecified.
[[nodiscard]] bool Compile(const char* format, locale_t locale, const LocaleWords& words,
                           Pattern& pattern) noexcept;

}  // namespace rv
