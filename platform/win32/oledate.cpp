#include "oledate.h"

#include <cmath>
#include <cstdint>

namespace {

// Days are counted from 1 March of the year 0 while years are taken apart: a leap day then ends its
// year, and the months before it follow one straight line.
constexpr unsigned kDaysBeforeDayZero = 693899;  // to 30 December 1899
constexpr unsigned kDaysIn400Years = 146097;

constexpr unsigned kFirstYear = 100;
constexpr unsigned kLastYear = 9999;
constexpr DATE kFirstDay = -657434.0;  // 1 January 100
constexpr DATE kLastDay = 2958465.0;   // 31 December 9999
constexpr unsigned kSecondsInDay = 86400;

constexpr bool Is_Leap(unsigned year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr unsigned Days_In_Month(unsigned year, unsigned month) {
    if (month == 2) return Is_Leap(year) ? 29 : 28;
    return 30 + ((month + (month >> 3)) & 1);  // the long months change sides with August
}

constexpr unsigned Days_Since_March(unsigned month, unsigned day) {
    const unsigned month_from_march = month > 2 ? month - 3 : month + 9;
    return (153 * month_from_march + 2) / 5 + day - 1;
}

constexpr int Day_Number(unsigned year, unsigned month, unsigned day) {
    const unsigned y = month > 2 ? year : year - 1;
    const unsigned days = 365 * y + y / 4 - y / 100 + y / 400 + Days_Since_March(month, day);
    return static_cast<int>(days) - static_cast<int>(kDaysBeforeDayZero);
}
static_assert(Day_Number(1899, 12, 30) == 0);
static_assert(Day_Number(kFirstYear, 1, 1) == static_cast<int>(kFirstDay));
static_assert(Day_Number(kLastYear, 12, 31) == static_cast<int>(kLastDay));

bool Is_Moment(const SYSTEMTIME& form) {
    return form.wYear >= kFirstYear && form.wYear <= kLastYear && form.wMonth >= 1 &&
           form.wMonth <= 12 && form.wDay >= 1 &&
           form.wDay <= Days_In_Month(form.wYear, form.wMonth) && form.wHour < 24 &&
           form.wMinute < 60 && form.wSecond < 60;
}

struct Moment {
    int day;           // from day 0
    unsigned seconds;  // of the day
};

// To the nearest second, so that a number a few rounding steps beside a whole one reads as that.
bool Split(DATE number, Moment& moment) {
    // Written so that NaN is refused.
    if (!(number > kFirstDay - 1 && number < kLastDay + 1)) return false;
    const int day = static_cast<int>(number);
    const DATE fraction = std::fabs(number - day);
    const auto seconds = static_cast<unsigned>(fraction * kSecondsInDay + 0.5);
    moment = seconds < kSecondsInDay ? Moment{day, seconds} : Moment{day + 1, 0};
    return moment.day <= static_cast<int>(kLastDay);
}

// Fixed-point arithmetic takes the days apart: each quotient and its remainder come from one
// product (Neri and Schneider, Euclidean affine functions and their application to calendar
// algorithms).
void Fill_Date(int day_number, SYSTEMTIME& form) {
    const auto days = static_cast<unsigned>(day_number + static_cast<int>(kDaysBeforeDayZero));
    const unsigned quarter_days = 4 * days + 3;
    const unsigned century = quarter_days / kDaysIn400Years;
    const unsigned day_of_century = quarter_days % kDaysIn400Years / 4;

    const std::uint64_t years = std::uint64_t{2939745} * (4 * day_of_century + 3);
    const auto year_of_century = static_cast<unsigned>(years >> 32);
    const unsigned day_of_year = static_cast<unsigned>(years) / 2939745 / 4;

    const unsigned months = 2141 * day_of_year + 197913;
    const bool is_january_or_february = day_of_year >= 306;
    form.wYear = static_cast<WORD>(100 * century + year_of_century + is_january_or_february);
    form.wMonth = static_cast<WORD>((months >> 16) - (is_january_or_february ? 12 : 0));
    form.wDay = static_cast<WORD>((months & 0xFFFF) / 2141 + 1);
    form.wDayOfWeek = static_cast<WORD>((days + 3) % 7);
}

void Fill_Time(unsigned seconds, SYSTEMTIME& form) {
    form.wHour = static_cast<WORD>(seconds / 3600);
    form.wMinute = static_cast<WORD>(seconds / 60 % 60);
    form.wSecond = static_cast<WORD>(seconds % 60);
    form.wMilliseconds = 0;
}

}  // namespace

INT SystemTimeToVariantTime(SYSTEMTIME* form, DATE* number) noexcept {
    if (!Is_Moment(*form)) return FALSE;
    const int day = Day_Number(form->wYear, form->wMonth, form->wDay);
    const DATE fraction = (form->wHour * 3600 + form->wMinute * 60 + form->wSecond) /
                          static_cast<DATE>(kSecondsInDay);
    *number = day < 0 ? day - fraction : day + fraction;
    return TRUE;
}

INT VariantTimeToSystemTime(DATE number, SYSTEMTIME* form) noexcept {
    Moment moment;
    if (!Split(number, moment)) return FALSE;
    Fill_Date(moment.day, *form);
    Fill_Time(moment.seconds, *form);
    return TRUE;
}

HRESULT VarUdateFromDate(DATE number, ULONG flags, UDATE* parts) noexcept {
    if (flags != 0 || !VariantTimeToSystemTime(number, &parts->st)) return E_INVALIDARG;
    const SYSTEMTIME& form = parts->st;
    const int day = Day_Number(form.wYear, form.wMonth, form.wDay);
    parts->wDayOfYear = static_cast<USHORT>(day - Day_Number(form.wYear, 1, 1) + 1);
    return S_OK;
}
