// Dates and times written in the forms of the user's locale.
#include <algorithm>
#include <cstring>

#include "error.h"
#include "locale.h"
#include "user_locale.h"

namespace {

using rv::Field;
using rv::Pattern;
using rv::PatternToken;
using rv::UserLocale;
using std::string_view;

constexpr std::size_t kLongestText = 255;

class TextWriter {
public:
    explicit TextWriter(const UserLocale& user) noexcept : m_User(user) {}

    // False: it is longer than any such text.
    bool Write(const Pattern& pattern, const SYSTEMTIME& moment) noexcept {
        for (const PatternToken& token : pattern.Tokens())
            if (!Write_Token(token, moment)) return false;
        return true;
    }

    string_view Text() const noexcept { return {m_Text, m_Length}; }

private:
    bool Write_Token(const PatternToken& token, const SYSTEMTIME& moment) noexcept {
        switch (token.field) {
            case Field::kYear:
                return Write_Year(token, moment.wYear);
            case Field::kMonth:
                return Write_Number(token, moment.wMonth);
            case Field::kDay:
                return Write_Number(token, moment.wDay);
            case Field::kMonthName:
                return Put(token.names[moment.wMonth - 1u]);
            case Field::kWeekday:
                return Put(token.names[moment.wDayOfWeek]);
            case Field::kHour:
                return Write_Number(token, moment.wHour);
            case Field::kHour12:
                return Write_Number(token, (moment.wHour + 11u) % 12 + 1);
            case Field::kMinute:
                return Write_Number(token, moment.wMinute);
            case Field::kSecond:
                return Write_Number(token, moment.wSecond);
            case Field::kHalf:
                return Put(token.names[moment.wHour / 12u]);
            case Field::kLiteral:
                return Put(token.text);
        }
        return false;
    }

    bool Write_Year(const PatternToken& token, int year) noexcept {
        const bool cut = token.two_digits && year >= rv::kFirstYearOfTwoDigits &&
                         year <= rv::kLastYearOfTwoDigits;
        if (cut) return Write_Number(token, static_cast<unsigned>(year) % 100);
        const int counted = year + (token.era ? m_User.era_years : 0);
        char reversed[8];
        std::size_t count = 0;
        for (int rest = counted; rest != 0 || count < 4; rest /= 10)
            reversed[count++] = static_cast<char>(rest % 10);
        while (count-- != 0) {
            const auto digit = static_cast<unsigned char>(reversed[count]);
            if (!(token.own_digits ? Put(m_User.words.digits[digit]) : Put_Digit(digit)))
                return false;
        }
        return true;
    }

    bool Write_Number(const PatternToken& token, unsigned number) noexcept {
        if (token.own_digits) return Put(m_User.words.numbers[number]);
        if (number >= 10) return Put_Digit(number / 10) && Put_Digit(number % 10);
        return (token.padding == '\0' || Put_Byte(token.padding)) && Put_Digit(number);
    }

    bool Put_Digit(unsigned digit) noexcept { return Put_Byte(static_cast<char>('0' + digit)); }

    bool Put_Byte(char byte) noexcept {
        if (m_Length == kLongestText) return false;
        m_Text[m_Length++] = byte;
        return true;
    }

    bool Put(string_view text) noexcept {
        if (text.size() > kLongestText - m_Length) return false;
        std::memcpy(m_Text + m_Length, text.data(), text.size());
        m_Length += text.size();
        return true;
    }

    const UserLocale& m_User;
    std::size_t m_Length = 0;
    char m_Text[kLongestText];
};

int Refuse(DWORD error) noexcept {
    SetLastError(error);
    return 0;
}

// The error of a call that asks for anything else than the callers do, ERROR_SUCCESS for theirs.
DWORD Check(LCID locale, DWORD flags, DWORD wanted_flags, const SYSTEMTIME* moment, LPCSTR picture,
            LPCSTR buffer, int room) noexcept {
    if (flags != wanted_flags) return ERROR_INVALID_FLAGS;
    const bool known = locale == LOCALE_USER_DEFAULT && moment && !picture;
    return known && room >= 0 && (buffer || room == 0) ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
}

int Write(const Pattern UserLocale::*pattern, const SYSTEMTIME& moment, LPSTR buffer,
          int room) noexcept {
    const UserLocale* const user = rv::User_Locale();
    if (!user) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    TextWriter writer(*user);
    if (!writer.Write(user->*pattern, moment)) return Refuse(ERROR_INSUFFICIENT_BUFFER);
    const string_view text = writer.Text();
    const int length = static_cast<int>(text.size()) + 1;
    if (room == 0) return length;
    if (room < length) return Refuse(ERROR_INSUFFICIENT_BUFFER);
    *std::copy(text.begin(), text.end(), buffer) = '\0';
    return length;
}

}  // namespace

int GetDateFormatA(LCID locale, DWORD flags, const SYSTEMTIME* moment, LPCSTR picture, LPSTR buffer,
                   int room) noexcept {
    const DWORD error = Check(locale, flags, DATE_SHORTDATE, moment, picture, buffer, room);
    if (error != ERROR_SUCCESS) return Refuse(error);
    SYSTEMTIME date = {moment->wYear, moment->wMonth, 0, moment->wDay, 0, 0, 0, 0};
    // There and back, because the day of the week may be anything so far.
    DATE number;
    if (!SystemTimeToVariantTime(&date, &number) || !VariantTimeToSystemTime(number, &date))
        return Refuse(ERROR_INVALID_PARAMETER);
    return Write(&UserLocale::date, date, buffer, room);
}

int GetTimeFormatA(LCID locale, DWORD flags, const SYSTEMTIME* moment, LPCSTR picture, LPSTR buffer,
                   int room) noexcept {
    const DWORD error = Check(locale, flags, 0, moment, picture, buffer, room);
    if (error != ERROR_SUCCESS) return Refuse(error);
    if (moment->wHour > 23 || moment->wMinute > 59 || moment->wSecond > 59)
        return Refuse(ERROR_INVALID_PARAMETER);
    return Write(&UserLocale::time, *moment, buffer, room);
}

HRESULT VarBstrFromDate(DATE number, LCID locale, ULONG flags, BSTR* text) noexcept {
    SYSTEMTIME date;
    const bool known = locale == LOCALE_USER_DEFAULT &&
                       (flags & ~ULONG{LOCALE_NOUSEROVERRIDE}) == VAR_DATEVALUEONLY && text;
    if (!known || !VariantTimeToSystemTime(number, &date)) return E_INVALIDARG;
    const UserLocale* const user = rv::User_Locale();
    if (!user) return E_OUTOFMEMORY;
    TextWriter writer(*user);
    if (!writer.Write(user->plain_date, date)) return E_INVALIDARG;
    const string_view plain = writer.Text();
    const BSTR made = SysAllocStringLen(nullptr, static_cast<UINT>(plain.size()));
    if (!made) return E_OUTOFMEMORY;
    std::copy(plain.begin(), plain.end(), made);
    *text = made;
    return S_OK;
}
