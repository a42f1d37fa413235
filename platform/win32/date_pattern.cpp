#include "date_pattern.h"

#include <langinfo.h>

#include <algorithm>
#include <cstring>
#include <ctime>

namespace {

using rv::Field;
using rv::LocaleWords;
using rv::Pattern;
using rv::PatternToken;
using std::string_view;

template <std::size_t size>
void Read_List(locale_t locale, nl_item first, std::array<string_view, size>& list) noexcept {
    for (string_view& word : list)
        word = nl_langinfo_l(first++, locale);
}

// Formatting them is the one way to the locale's numbers that is published.
bool Read_Numbers(locale_t locale, LocaleWords& words) noexcept {
    std::size_t used = 0;
    for (int number = 0; number < 100; ++number) {
        std::tm year = {};
        year.tm_year = number;
        char* const text = words.digit_text.data() + used;
        const std::size_t length =
            strftime_l(text, words.digit_text.size() - used, "%Oy", &year, locale);
        if (length == 0) return false;
        words.numbers[static_cast<std::size_t>(number)] = {text, length};
        used += length;
    }
    return true;
}

// Where 11, 22 and so on are a digit twice, numbers are written by places, maybe always two of
// them. Elsewhere, as in Chinese, the digits stand for themselves only when a year is written by
// them.
void Find_Digits(LocaleWords& words) noexcept {
    const auto half = [&words](std::size_t digit) {
        const string_view twice = words.numbers[11 * digit];
        return twice.substr(0, twice.size() / 2);
    };
    words.by_places = true;
    for (std::size_t digit = 1; digit < 10; ++digit)
        words.by_places = words.by_places && words.numbers[11 * digit].ends_with(half(digit));
    std::copy_n(words.numbers.begin(), words.digits.size(), words.digits.begin());
    if (!words.by_places) return;
    words.digits[0] = words.numbers[10].substr(half(1).size());
    for (std::size_t digit = 1; digit < 10; ++digit)
        words.digits[digit] = half(digit);
}

class Compiler {
public:
    Compiler(locale_t locale, const LocaleWords& words, Pattern& pattern) noexcept
        : m_Locale(locale), m_Words(words), m_Pattern(pattern) {}

    // `depth` counts the formats that this one stands in.
    bool Add_Format(string_view format, int depth) noexcept {
        while (!format.empty()) {
            const std::size_t length = std::min(format.find('%'), format.size());
            if (length != 0) {
                if (!Add_Literal(format.substr(0, length))) return false;
                format.remove_prefix(length);
            } else if (!Take_Century(format) && !Take_Conversion(format, depth)) {
                return false;
            }
        }
        return true;
    }

private:
    bool Add_Literal(string_view text) noexcept {
        if (m_Left_Out)
            while (text.starts_with(' '))
                text.remove_prefix(1);
        m_Left_Out = false;
        return text.empty() || m_Pattern.Add({.padding = '\0', .text = text});
    }

    // The blanks on one side go with what is left out.
    bool Leave_Out() noexcept {
        PatternToken* const last = m_Pattern.Last();
        if (!last) m_Left_Out = true;
        if (!last || last->field != Field::kLiteral) return true;
        while (last->text.ends_with(' '))
            last->text.remove_suffix(1);
        if (last->text.empty()) m_Pattern.Remove_Last();
        return true;
    }

    bool Add_Number(Field field, char padding, bool own_digits) noexcept {
        return Add(
            {.field = field, .padding = padding, .own_digits = own_digits && m_Words.has_digits});
    }
    bool Add_Year(bool two_digits, bool era, bool own_digits) noexcept {
        return Add({.field = Field::kYear,
                    .own_digits = own_digits && m_Words.has_digits,
                    .two_digits = two_digits,
                    .era = era});
    }
    bool Add_Name(Field field, rv::NameList names) noexcept {
        return Add({.field = field, .names = names});
    }
    bool Add(const PatternToken& token) noexcept {
        m_Left_Out = false;
        return m_Pattern.Add(token);
    }

    // A century and the year in it are one number.
    bool Take_Century(string_view& format) noexcept {
        for (const string_view year : {"%C%y", "%OC%Oy"}) {
            if (!format.starts_with(year)) continue;
            format.remove_prefix(year.size());
            return Add_Year(false, false, year.size() == 6);
        }
        return false;
    }

    bool Take_Conversion(string_view& format, int depth) noexcept {
        std::size_t at = 1;
        const auto next = [&] { return at < format.size() ? format[at++] : '\0'; };
        char letter = next(), flag = '\0', modifier = '\0';
        if (letter == '-' || letter == '_' || letter == '0') {
            flag = letter;
            letter = next();
        }
        if (letter == 'E' || letter == 'O') {
            modifier = letter;
            letter = next();
        }
        format.remove_prefix(at);
        if (modifier == 'E') return letter == 'y' && Add_Year(false, true, false);
        return Add_Conversion(letter, flag, modifier == 'O', depth);
    }

    bool Add_Conversion(char letter, char flag, bool other, int depth) noexcept {
        const auto number = [&](Field field, char padding) {
            if (flag == '-') padding = '\0';
            if (flag == '_') padding = ' ';
            if (flag == '0') padding = '0';
            return Add_Number(field, padding, other);
        };
        switch (letter) {
            case 'Y':
                return Add_Year(false, false, false);
            case 'y':
                return Add_Year(true, false, other);
            case 'm':
                return number(Field::kMonth, '0');
            case 'd':
                return number(Field::kDay, '0');
            case 'e':
                return number(Field::kDay, ' ');
            case 'B':
                return Add_Name(Field::kMonthName, m_Words.months[other ? 2 : 0]);
            case 'b':
            case 'h':
                return Add_Name(Field::kMonthName, m_Words.months[other ? 3 : 1]);
            case 'A':
                return Add_Name(Field::kWeekday, m_Words.weekdays[0]);
            case 'a':
                return Add_Name(Field::kWeekday, m_Words.weekdays[1]);
            case 'H':
                return number(Field::kHour, '0');
            case 'k':
                return number(Field::kHour, ' ');
            case 'I':
                return number(Field::kHour12, '0');
            case 'l':
                return number(Field::kHour12, ' ');
            case 'M':
                return number(Field::kMinute, '0');
            case 'S':
                return number(Field::kSecond, '0');
            case 'p':
                return Has_Halves() ? Add_Name(Field::kHalf, m_Words.halves) : Leave_Out();
            case 'Z':
            case 'z':
                return Leave_Out();
            case 'n':
            case 't':
                return Add_Literal(" ");
            case '%':
                return Add_Literal("%");
            default:
                return Add_Composed(letter, depth);
        }
    }

    bool Has_Halves() const noexcept {
        return !m_Words.halves[0].empty() && !m_Words.halves[1].empty();
    }

    bool Add_Composed(char letter, int depth) noexcept {
        if (depth == 2) return false;
        switch (letter) {
            case 'D':
                return Add_Format("%m/%d/%y", depth + 1);
            case 'F':
                return Add_Format("%Y-%m-%d", depth + 1);
            case 'R':
                return Add_Format("%H:%M", depth + 1);
            case 'T':
                return Add_Format("%H:%M:%S", depth + 1);
            case 'r': {
                const string_view format = nl_langinfo_l(T_FMT_AMPM, m_Locale);
                return Add_Format(format.empty() ? "%I:%M:%S %p" : format, depth + 1);
            }
            default:
                return false;
        }
    }

    locale_t m_Locale;
    const LocaleWords& m_Words;
    Pattern& m_Pattern;
    bool m_Left_Out = false;  // nothing stands before yet but what was left out
};

}  // namespace

string_view rv::Trimmed(string_view text) noexcept {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

std::size_t rv::Pattern::Count(Field field) const noexcept {
    const auto tokens = Tokens();
    return static_cast<std::size_t>(
        std::count_if(tokens.begin(), tokens.end(),
                      [field](const PatternToken& token) { return token.field == field; }));
}

void rv::Pattern::Replace(Field field, Field by) noexcept {
    for (PatternToken& token : std::span(m_Tokens).first(m_Count))
        if (token.field == field) token.field = by;
}

void rv::Read_Words(locale_t locale, LocaleWords& words) noexcept {
    Read_List(locale, MON_1, words.months[0]);
    Read_List(locale, ABMON_1, words.months[1]);
    Read_List(locale, ALTMON_1, words.months[2]);
    Read_List(locale, _NL_ABALTMON_1, words.months[3]);
    Read_List(locale, DAY_1, words.weekdays[0]);
    Read_List(locale, ABDAY_1, words.weekdays[1]);
    Read_List(locale, AM_STR, words.halves);
    words.has_digits = *nl_langinfo_l(ALT_DIGITS, locale) != '\0' && Read_Numbers(locale, words);
    if (words.has_digits) Find_Digits(words);
}

bool rv::Compile(const char* format, locale_t locale, const LocaleWords& words,
                 Pattern& pattern) noexcept {
    pattern.Clear();
    return Compiler(locale, words, pattern).Add_Format(format, 0);
}
