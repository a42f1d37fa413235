// What the user's locale knows of dates and times, taken in once and kept.
#pragma once

#include <locale.h>

#include <array>
#include <string_view>

#include "date_pattern.h"

namespace rv {

// What parts the numbers of a date, besides blanks.
inline constexpr std::string_view kDateSeparators = "/-.,";

inline constexpr int kFirstYearOfTwoDigits = 1930;
inline constexpr int kLastYearOfTwoDigits = kFirstYearOfTwoDigits + 99;

struct UserLocale {
    locale_t locale;
    LocaleWords words;
    Pattern date;
    Pattern time;
    Pattern plain_date;          // in numbers, without names
    std::array<Field, 3> order;  // of year, month and day
    int era_years;               // what the locale's count of years is ahead by
    bool era;                    // its short date counts so
    // What stands behind a number, without blanks; empty where that is none of the separators of
    // a date, or nothing. What parts hours, minutes and seconds may be one of them.
    std::array<std::string_view, kFields> marks;

    std::string_view Mark(Field field) const noexcept {
        return marks[static_cast<std::size_t>(field)];
    }
};

// The user's locale of this moment; null without memory. It lives until the calling thread asks
// again, or ends.
[[nodiscard]] const UserLocale* User_Locale() noexcept;

}  // namespace rv
