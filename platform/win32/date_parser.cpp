// Texts of the user's locale read as dates and times.
//
// A text is first read by the locale's own patterns, just as they are written, so that what was
// formatted reads back without a guess. What does not fit is read item by item, in any form that
// has one meaning. Where both fail, names are compared again in the locale's way of folding cases,
// which is slower.
#include <algorithm>
#include <array>
#include <cmath>
#include <cwchar>
#include <cwctype>

#include "error.h"
#include "locale.h"
#include "text.h"
#include "user_locale.h"

namespace {

using rv::Field;
using rv::NameList;
using rv::Pattern;
using rv::PatternToken;
using rv::UserLocale;
using std::string_view;

constexpr std::size_t kLongestText = 255;

bool Is_Digit(char c) noexcept {
    return c >= '0' && c <= '9';
}

bool Is_Blank(char c) noexcept {
    return c == ' ' || c == '\t';
}

bool Is_Separator(char c) noexcept {
    return rv::kDateSeparators.find(c) != string_view::npos;
}

char Lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

struct Number {
    int value = 0;
    int digits = 0;
    Field unit = Field::kLiteral;  // by the mark behind it; this one when there is none
};

// What was read so far; -1 where nothing was.
struct Reading {
    int year = -1;
    int month = -1;  // from 1
    int day = -1;
    int hour = -1;
    int minute = 0;
    int second = 0;
    int half = -1;

    bool Has_Date() const noexcept { return day >= 0; }
    bool Has_Time() const noexcept { return hour >= 0; }
};

// ---- the text -----------------------------------------------------------------------------------

// A place in the text, and what can stand there.
class Cursor {
public:
    Cursor(const UserLocale& user, string_view text, bool folds) noexcept
        : m_User(user), m_Rest(text), m_Folds(folds) {}

    const UserLocale& User() const noexcept { return m_User; }
    bool At_End() const noexcept { return m_Rest.empty(); }
    bool At_Separator() const noexcept { return !At_End() && Is_Separator(m_Rest.front()); }
    void Move(std::size_t bytes) noexcept { m_Rest.remove_prefix(bytes); }
    // To come back to with Return.
    string_view Place() const noexcept { return m_Rest; }
    void Return(string_view place) noexcept { m_Rest = place; }

    void Skip_Blanks() noexcept {
        while (!At_End() && Is_Blank(m_Rest.front()))
            m_Rest.remove_prefix(1);
    }

    bool Take(string_view text) noexcept {
        if (!m_Rest.starts_with(text)) return false;
        m_Rest.remove_prefix(text.size());
        return true;
    }

    // A blank stands for any number of them.
    bool Take_Literal(string_view literal) noexcept {
        for (const char c : literal) {
            if (Is_Blank(c)) {
                Skip_Blanks();
            } else if (!At_End() && m_Rest.front() == c) {
                m_Rest.remove_prefix(1);
            } else {
                return false;
            }
        }
        return true;
    }

    bool Take_Number(Number& number) noexcept {
        number = {};
        std::size_t length = 0;
        for (; length < m_Rest.size() && Is_Digit(m_Rest[length]); ++length)
            if (!Add_Digit(number, m_Rest[length] - '0')) return false;
        if (length == 0) return m_User.words.has_digits && Take_Own_Number(number);
        m_Rest.remove_prefix(length);
        return true;
    }

    // The length of a name that stands here, in either case; 0 when it does not.
    std::size_t Match(string_view name) const noexcept {
        name = rv::Trimmed(name);
        if (name.empty()) return 0;
        const std::size_t length = name.size() <= m_Rest.size() ? name.size() : 0;
        std::size_t at = 0;
        while (at < length && (m_Rest[at] == name[at] || Lower(m_Rest[at]) == Lower(name[at])))
            ++at;
        if (at == name.size()) return at;
        return m_Folds ? Match_Folded(name) : 0;
    }

    // The same with the dot of a short name, be it missing in the name or in the text.
    std::size_t Match_With_Dot(string_view name) const noexcept {
        name = rv::Trimmed(name);
        if (name.ends_with('.')) name.remove_suffix(1);
        const std::size_t length = Match(name);
        return length + (length != 0 && m_Rest.substr(length).starts_with('.'));
    }

    // The index of the longest name that stands here; -1 for none.
    int Take_Name(NameList names) noexcept {
        std::size_t longest = 0;
        int found = -1;
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::size_t length = Match(names[i]);
            if (length <= longest) continue;
            longest = length;
            found = static_cast<int>(i);
        }
        m_Rest.remove_prefix(longest);
        return found;
    }

private:
    // Years of other eras may have five digits.
    static bool Add_Digit(Number& number, int digit) noexcept {
        number.value = number.value * 10 + digit;
        return ++number.digits <= 5;
    }

    // As its digits, or as the word for it: whichever is longer.
    bool Take_Own_Number(Number& number) noexcept {
        string_view rest = m_Rest;
        for (int digit; (digit = Take_Own_Digit(rest)) >= 0;)
            if (!Add_Digit(number, digit)) return false;
        std::size_t length = m_Rest.size() - rest.size();
        for (std::size_t i = 0; i < 100 && !m_User.words.by_places; ++i) {
            const string_view word = m_User.words.numbers[i];
            if (word.size() <= length || !m_Rest.starts_with(word)) continue;
            length = word.size();
            number = {static_cast<int>(i), 2};
        }
        m_Rest.remove_prefix(length);
        return length != 0;
    }

    int Take_Own_Digit(string_view& rest) const noexcept {
        for (std::size_t digit = 0; digit < 10; ++digit) {
            const string_view text = m_User.words.digits[digit];
            if (!rest.starts_with(text)) continue;
            rest.remove_prefix(text.size());
            return static_cast<int>(digit);
        }
        return -1;
    }

    // The next character of a text, folded; a byte without meaning stands for itself.
    wint_t Take_Folded(string_view& text) const noexcept {
        wchar_t character = 0;
        std::mbstate_t state = {};
        std::size_t used = std::mbrtowc(&character, text.data(), text.size(), &state);
        if (used == 0 || used > text.size()) {
            character = static_cast<unsigned char>(text.front());
            used = 1;
        }
        text.remove_prefix(used);
        // By way of upper case, since that has no second form of a letter for the end of a word.
        const wint_t upper = towupper_l(static_cast<wint_t>(character), m_User.locale);
        return towlower_l(upper, m_User.locale);
    }

    std::size_t Match_Folded(string_view name) const noexcept {
        string_view rest = m_Rest;
        while (!name.empty())
            if (rest.empty() || Take_Folded(rest) != Take_Folded(name)) return 0;
        return m_Rest.size() - rest.size();
    }

    const UserLocale& m_User;
    string_view m_Rest;
    bool m_Folds;
};

// ---- what the numbers mean ----------------------------------------------------------------------

// `counted`: in the locale's count of years.
int Year_Of(const UserLocale& user, const Number& number, bool counted) noexcept {
    const int ahead = counted && user.era ? user.era_years : 0;
    if (number.digits > 2) return number.value - ahead;
    const int beyond_first = (number.value - rv::kFirstYearOfTwoDigits - ahead) % 100;
    return rv::kFirstYearOfTwoDigits + (beyond_first < 0 ? beyond_first + 100 : beyond_first);
}

// Turns the hour of a half day into that of the day. Hours beyond noon may say so once more.
bool Apply_Half(Reading& reading) noexcept {
    if (reading.half < 0) return true;
    if (reading.hour < 0 || (reading.half == 0 && reading.hour > 12)) return false;
    if (reading.hour <= 12) reading.hour = reading.hour % 12 + 12 * reading.half;
    return true;
}

// ---- by the locale's pattern --------------------------------------------------------------------

bool Read_Field(const PatternToken& token, Cursor& cursor, Reading& reading) noexcept {
    switch (token.field) {
        case Field::kLiteral:
            return cursor.Take_Literal(token.text);
        case Field::kMonthName:
            reading.month = cursor.Take_Name(token.names) + 1;
            return reading.month != 0;
        case Field::kWeekday:
            return cursor.Take_Name(token.names) >= 0;
        case Field::kHalf:
            reading.half = cursor.Take_Name(token.names);
            return reading.half >= 0;
        default:
            break;
    }
    Number number;
    if (!cursor.Take_Number(number)) return false;
    if (token.field == Field::kYear) {
        reading.year = Year_Of(cursor.User(), number, token.era);
        return true;
    }
    int& part = token.field == Field::kMonth    ? reading.month
                : token.field == Field::kDay    ? reading.day
                : token.field == Field::kMinute ? reading.minute
                : token.field == Field::kSecond ? reading.second
                                                : reading.hour;
    part = number.value;
    return number.digits <= 2;
}

bool Read_Pattern(const Pattern& pattern, Cursor& cursor, Reading& reading) noexcept {
    for (const PatternToken& token : pattern.Tokens()) {
        cursor.Skip_Blanks();
        if (!Read_Field(token, cursor, reading)) return false;
    }
    cursor.Skip_Blanks();
    return true;
}

// One pattern, or both, up to the end.
bool Read_Patterns(const Pattern& first, const Pattern& second, Cursor cursor,
                   Reading& reading) noexcept {
    reading = {};
    if (!Read_Pattern(first, cursor, reading)) return false;
    if (!cursor.At_End() && (!Read_Pattern(second, cursor, reading) || !cursor.At_End()))
        return false;
    return Apply_Half(reading);
}

// ---- item by item -------------------------------------------------------------------------------

// What a word can mean. A short name of a month may be that of a weekday as well.
struct Word {
    std::size_t length = 0;
    int month = -1;
    int weekday = -1;
    int half = -1;
    bool has_one_meaning = true;  // not the name of two months

    // Forgets what is shorter. False: there is something longer.
    bool Accept(std::size_t found) noexcept {
        if (found == 0 || found < length) return false;
        if (found > length) *this = {.length = found};
        return true;
    }
};

class FreeReader {
public:
    // `marks_are_time`: what parts hours and minutes in the locale does so, although it also parts
    // the numbers of dates.
    FreeReader(const Cursor& cursor, bool marks_are_time) noexcept
        : m_User(cursor.User()), m_Cursor(cursor), m_Marks_Are_Time(marks_are_time) {}

    bool Read(Reading& reading) noexcept {
        for (m_Cursor.Skip_Blanks(); !m_Cursor.At_End(); m_Cursor.Skip_Blanks())
            if (!Read_Item()) return false;
        if (m_Behind_Separator || !Compose_Date() || !Apply_Half(m_Reading)) return false;
        reading = m_Reading;
        return reading.Has_Date() || reading.Has_Time();
    }

private:
    bool Read_Item() noexcept {
        Number number;
        if (m_Cursor.Take_Number(number)) {
            m_Behind_Separator = false;
            return Add_Number(number);
        }
        if (const Word word = Find_Word(); word.length != 0) {
            m_Cursor.Move(word.length);
            m_Behind_Separator = false;
            return Add_Word(word);
        }
        if (Take_Literal()) return true;
        // One of them parts two items.
        if (!m_Cursor.At_Separator() || m_Behind_Separator || m_At_Start) return false;
        m_Cursor.Move(1);
        m_Behind_Separator = true;
        return true;
    }

    // ---- words

    Word Find_Word() const noexcept {
        Word word;
        for (const auto& months : m_User.words.months)
            for (int i = 0; i < 12; ++i)
                if (word.Accept(m_Cursor.Match_With_Dot(months[static_cast<std::size_t>(i)]))) {
                    word.has_one_meaning = word.month < 0 || word.month == i;
                    word.month = i;
                }
        for (const auto& weekdays : m_User.words.weekdays)
            for (int i = 0; i < 7; ++i)
                if (word.Accept(m_Cursor.Match_With_Dot(weekdays[static_cast<std::size_t>(i)])))
                    word.weekday = i;
        const Word half = Find_Half();
        return half.length > word.length ? half : word;
    }

    Word Find_Half() const noexcept {
        constexpr string_view kPlain[] = {"AM", "PM"};
        Word word;
        for (const NameList halves : {NameList(m_User.words.halves), NameList(kPlain)})
            for (int i = 0; i < 2; ++i) {
                const std::size_t length = m_Cursor.Match(halves[static_cast<std::size_t>(i)]);
                if (length > word.length) word = {.length = length, .half = i};
            }
        return word;
    }

    bool Add_Word(const Word& word) noexcept {
        m_At_Start = false;
        if (word.half >= 0) return Add_Half(word.half);
        if (!word.has_one_meaning) return false;
        const bool is_month = word.month >= 0 && m_Reading.month < 0;
        if (is_month) {
            m_Reading.month = word.month + 1;
            m_Month_May_Be_Weekday = word.weekday >= 0;
            return true;
        }
        if (word.month >= 0 && m_Month_May_Be_Weekday) {
            m_Reading.month = word.month + 1;
            m_Month_May_Be_Weekday = false;
            return Add_Weekday();
        }
        return word.weekday >= 0 && Add_Weekday();
    }

    bool Add_Weekday() noexcept {
        if (m_Has_Weekday) return false;
        m_Has_Weekday = true;
        return true;
    }

    bool Add_Half(int half) noexcept {
        if (m_Reading.half >= 0) return false;
        m_Reading.half = half;
        return true;
    }

    // Words of the locale's patterns that carry no meaning of their own.
    bool Take_Literal() noexcept {
        for (const Pattern* pattern : {&m_User.date, &m_User.time})
            for (const PatternToken& token : pattern->Tokens()) {
                const string_view text = rv::Trimmed(token.text);
                if (text.find_first_not_of(rv::kDateSeparators) != string_view::npos &&
                    m_Cursor.Take(text))
                    return true;
            }
        return false;
    }

    // ---- numbers

    bool Add_Number(Number& number) noexcept {
        m_At_Start = false;
        if (number.digits <= 2 && Take_Hour_Mark()) return Read_Time(number.value);
        for (const Field unit : {Field::kYear, Field::kMonth, Field::kDay})
            if (const string_view mark = m_User.Mark(unit); !mark.empty() && m_Cursor.Take(mark)) {
                number.unit = unit;
                break;
            }
        if (m_Count == m_Numbers.size()) return false;
        m_Numbers[m_Count++] = number;
        return true;
    }

    bool Is_Date_Complete() const noexcept {
        return m_Count + (m_Reading.month >= 0) == m_Numbers.size();
    }

    // Whether the number before is an hour.
    bool Take_Hour_Mark() noexcept {
        if (m_Cursor.Take(":")) return true;
        const string_view mark = m_User.Mark(Field::kHour);
        if (!mark.empty() &&
            (!Is_Separator(mark.front()) || m_Marks_Are_Time || Is_Date_Complete()))
            if (m_Cursor.Take(mark)) return true;
        const string_view place = m_Cursor.Place();
        m_Hour_Is_Full = Is_Before_Half();
        m_Cursor.Return(place);
        return m_Hour_Is_Full;
    }

    // The word may also belong to an hour behind it.
    bool Is_Before_Half() noexcept {
        m_Cursor.Skip_Blanks();
        const std::size_t length = Find_Half().length;
        m_Cursor.Move(length);
        m_Cursor.Skip_Blanks();
        Number hour;
        const string_view mark = m_User.Mark(Field::kHour);
        return length != 0 && !(m_Cursor.Take_Number(hour) &&
                                (m_Cursor.Take(":") || (!mark.empty() && m_Cursor.Take(mark))));
    }

    bool Read_Time(int hour) noexcept {
        if (m_Reading.Has_Time()) return false;
        m_Reading.hour = hour;
        return m_Hour_Is_Full || Read_Minutes();
    }

    bool Read_Minutes() noexcept {
        if (!Read_Part(m_Reading.minute)) return false;
        if (m_Cursor.Take(":")) return Read_Part(m_Reading.second) && Take_Second_Mark();
        string_view place = m_Cursor.Place();
        const string_view mark = m_User.Mark(Field::kMinute);
        if (mark.empty() || !m_Cursor.Take(mark)) return true;
        if (!Is_Separator(mark.front())) place = m_Cursor.Place();
        if (Read_Part(m_Reading.second) && Take_Second_Mark()) return true;
        m_Reading.second = 0;
        m_Cursor.Return(place);
        return true;
    }

    bool Read_Part(int& part) noexcept {
        Number number;
        m_Cursor.Skip_Blanks();
        const bool taken = m_Cursor.Take_Number(number) && number.digits <= 2;
        part = number.value;
        return taken;
    }

    // What has the locale's mark behind minutes must have it behind seconds.
    bool Take_Second_Mark() noexcept {
        const string_view mark = m_User.Mark(Field::kSecond);
        const bool needed = !mark.empty() && m_User.Mark(Field::kMinute) != ":";
        return m_Cursor.Take(mark) || !needed;
    }

    // ---- the date of it all

    bool Compose_Date() noexcept {
        if (m_Count == 0 && m_Reading.month < 0 && !m_Has_Weekday) return true;
        if (!Is_Date_Complete()) return false;
        return m_Reading.month < 0 ? Compose_Numbers() : Compose_Beside_Name();
    }

    static bool Is_Year(const Number& number) noexcept {
        return number.digits > 2 || number.value > 31;
    }

    bool Compose_Beside_Name() noexcept {
        const auto before = [this](Field a, Field b) {
            const auto& order = m_User.order;
            return std::find(order.begin(), order.end(), a) <
                   std::find(order.begin(), order.end(), b);
        };
        const bool year_first =
            Is_Year(m_Numbers[0]) || (!Is_Year(m_Numbers[1]) && before(Field::kYear, Field::kDay));
        m_Count = 0;
        return Set_Year(m_Numbers[year_first ? 0 : 1], true) &&
               Set_Part(m_Reading.day, m_Numbers[year_first ? 1 : 0], Field::kDay);
    }

    bool Compose_Numbers() noexcept {
        std::array order = m_User.order;
        bool counted = true;
        if (m_Numbers[0].digits > 2 && order[0] != Field::kYear) {
            order = {Field::kYear, Field::kMonth, Field::kDay};
            counted = false;
        } else if (m_Numbers[2].digits > 2 && order[0] == Field::kYear) {
            order = {order[1], order[2], Field::kYear};
        }
        for (std::size_t i = 0; i < order.size(); ++i) {
            const Number& number = m_Numbers[i];
            const bool set = order[i] == Field::kYear ? Set_Year(number, counted)
                             : order[i] == Field::kMonth
                                 ? Set_Part(m_Reading.month, number, Field::kMonth)
                                 : Set_Part(m_Reading.day, number, Field::kDay);
            if (!set) return false;
        }
        return true;
    }

    static bool Can_Be(const Number& number, Field field) noexcept {
        return number.unit == field || number.unit == Field::kLiteral;
    }

    bool Set_Year(const Number& number, bool counted) noexcept {
        m_Reading.year = Year_Of(m_User, number, counted);
        return Can_Be(number, Field::kYear);
    }

    bool Set_Part(int& part, const Number& number, Field field) noexcept {
        part = number.value;
        return number.digits <= 2 && Can_Be(number, field);
    }

    const UserLocale& m_User;
    Cursor m_Cursor;
    Reading m_Reading;
    std::array<Number, 3> m_Numbers;  // of the date
    std::size_t m_Count = 0;
    bool m_Marks_Are_Time;
    bool m_At_Start = true;
    bool m_Behind_Separator = false;
    bool m_Hour_Is_Full = false;
    bool m_Has_Weekday = false;
    bool m_Month_May_Be_Weekday = false;
};

// ---- the whole ----------------------------------------------------------------------------------

// The whole must be right, also where only one half of it is wanted. The number is written only
// then.
bool Number_Of(const Reading& reading, ULONG half, DATE& number) noexcept {
    if ((half == VAR_DATEVALUEONLY && !reading.Has_Date()) ||
        (half == VAR_TIMEVALUEONLY && !reading.Has_Time()) || reading.year > 9999)
        return false;
    const auto word = [](int part) { return static_cast<WORD>(part); };
    SYSTEMTIME form = {1899, 12, 0, 30, 0, 0, 0, 0};
    if (reading.Has_Date()) {
        form.wYear = word(reading.year);
        form.wMonth = word(reading.month);
        form.wDay = word(reading.day);
    }
    if (reading.Has_Time()) {
        form.wHour = word(reading.hour);
        form.wMinute = word(reading.minute);
        form.wSecond = word(reading.second);
    }
    DATE both;
    if (!SystemTimeToVariantTime(&form, &both)) return false;
    if (half == 0) number = both;
    if (half == VAR_DATEVALUEONLY) number = std::trunc(both);
    if (half != VAR_TIMEVALUEONLY) return true;
    // Made anew, since the difference of the two would be less exact.
    form.wYear = 1899;
    form.wMonth = 12;
    form.wDay = 30;
    return SystemTimeToVariantTime(&form, &number) != 0;
}

// Where one way to read the text gives no moment, the next one may.
bool Read(const Cursor& cursor, ULONG half, DATE& number) noexcept {
    const UserLocale& user = cursor.User();
    Reading reading;
    const auto is_moment = [&] { return Number_Of(reading, half, number); };
    if (Read_Patterns(user.date, user.time, cursor, reading) && is_moment()) return true;
    if (Read_Patterns(user.time, user.date, cursor, reading) && is_moment()) return true;
    if (FreeReader(cursor, false).Read(reading) && is_moment()) return true;
    return half == VAR_TIMEVALUEONLY && FreeReader(cursor, true).Read(reading) && is_moment();
}

// The thread's encoding is the locale's own for as long as one lives.
class EncodingOf {
public:
    explicit EncodingOf(locale_t locale) noexcept : m_Before(uselocale(locale)) {}
    EncodingOf(const EncodingOf&) = delete;
    EncodingOf& operator=(const EncodingOf&) = delete;
    ~EncodingOf() { uselocale(m_Before); }

private:
    locale_t m_Before;
};

bool Read(const UserLocale& user, string_view text, ULONG half, DATE& number) noexcept {
    if (Read(Cursor(user, text, false), half, number)) return true;
    const EncodingOf encoding(user.locale);
    return Read(Cursor(user, text, true), half, number);
}

// False: it is too long, or has characters that the thread's encoding lacks.
bool Narrow(const OLECHAR* text, char (&narrow)[kLongestText + 1], string_view& result) noexcept {
    std::size_t length = 0;
    bool is_bytes = true;  // ASCII, and bytes without meaning in the thread's encoding
    for (; text[length] != L'\0'; ++length) {
        if (length == kLongestText) return false;
        const auto unit = static_cast<std::uint32_t>(text[length]);
        is_bytes = is_bytes && (unit < 0x80 || (unit >= 0xDC80 && unit <= 0xDCFF));
        narrow[length] = static_cast<char>(unit);
    }
    result = {narrow, length};
    if (is_bytes) return true;
    BOOL replaced = FALSE;
    const int count = WideCharToMultiByte(CP_THREAD_ACP, 0, text, static_cast<int>(length), narrow,
                                          sizeof narrow, nullptr, &replaced);
    result = {narrow, static_cast<std::size_t>(count)};
    return count != 0 && !replaced;
}

}  // namespace

HRESULT VarDateFromStr(const OLECHAR* text, LCID locale, ULONG flags, DATE* number) noexcept {
    const ULONG half = flags & ~ULONG{LOCALE_NOUSEROVERRIDE};
    if (locale != LOCALE_USER_DEFAULT || half > VAR_DATEVALUEONLY || !number) return E_INVALIDARG;
    char narrow[kLongestText + 1];
    string_view bytes;
    if (!text || !Narrow(text, narrow, bytes)) return DISP_E_TYPEMISMATCH;
    const UserLocale* const user = rv::User_Locale();
    if (!user) return E_OUTOFMEMORY;
    return Read(*user, bytes, half, *number) ? S_OK : DISP_E_TYPEMISMATCH;
}
