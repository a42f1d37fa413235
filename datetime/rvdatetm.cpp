#include "rvdatetm.h"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <new>
#include <string_view>
#include <type_traits>

#include "../frame/RVDev.h"
#include "../platform/mfc/CException.h"
#include "../platform/winapi.h"

// rv::HeapDeleter frees the record without a destructor.
static_assert(std::is_trivially_destructible_v<COleDateTime>);

namespace {

using rv::kHalfSecond;

enum ReportCode : unsigned int {
    kNullPointer = 12,
    kBadValue = 13,
    kPartsRefused = 17,
    kNoHeldValue = 18,
    kNoMemory = 23,
    kPartRefused = 25,
    kNoText = 28,
};

constexpr std::string_view kDefaultDbText = "19800101000001";
constexpr std::size_t kDbTextLength = 14;

constexpr UINT kInvalidTextResource = 55296;
constexpr std::size_t kTextRoom = 256;

constexpr LONG kSeconds1970To1980 = 315532800;
constexpr LONG kDaylightShift = 3600;
constexpr int kFirstYearOfTime70 = 1970;
constexpr int kFirstYearOfTime80 = 1980;

constexpr ULONG kFallbackFlags = LOCALE_NOUSEROVERRIDE | VAR_DATEVALUEONLY;
constexpr int kLocaleTextRoom = 64;

// The line is that of the caller.
void Report(ReportCode code, ULONG line = __builtin_LINE()) {
    pProgrammer_Error(code, "rvdatetm", line, true);
}

// Ends an operation with its report, and with false or 0 for its result.
bool Refuse(ReportCode code, ULONG line = __builtin_LINE()) {
    Report(code, line);
    return false;
}

// Wide enough for a part that could not be read, which is -1.
struct Parts {
    int year, month, day, hour, minute, second;
};

bool Same_Moment(const SYSTEMTIME& left, const SYSTEMTIME& right) {
    return left.wYear == right.wYear && left.wMonth == right.wMonth && left.wDay == right.wDay &&
           left.wHour == right.wHour && left.wMinute == right.wMinute &&
           left.wSecond == right.wSecond;
}

// Converts there and back: the platform rolls some forms over to the next real moment.
bool Number_From_Calendar(SYSTEMTIME form, DATE& number) {
    SYSTEMTIME back;
    return SystemTimeToVariantTime(&form, &number) != 0 &&
           VariantTimeToSystemTime(number, &back) != 0 && Same_Moment(form, back);
}

// A refused form leaves the number alone.
void Set_From_Form(COleDateTime& target, const SYSTEMTIME& form) {
    DATE number = 0.0;
    const bool accepted = Number_From_Calendar(form, number);
    if (accepted) target.m_dt = number;
    target.m_status = accepted ? COleDateTime::valid : COleDateTime::invalid;
}

void Set_From_Calendar(COleDateTime& target, const Parts& parts) {
    SYSTEMTIME form = {};
    form.wYear = static_cast<WORD>(parts.year);
    form.wMonth = static_cast<WORD>(parts.month);
    form.wDay = static_cast<WORD>(parts.day);
    form.wHour = static_cast<WORD>(parts.hour);
    form.wMinute = static_cast<WORD>(parts.minute);
    form.wSecond = static_cast<WORD>(parts.second);
    Set_From_Form(target, form);
}

bool Get_Calendar(const COleDateTime& value, SYSTEMTIME& form) {
    return value.m_status == COleDateTime::valid && VariantTimeToSystemTime(value.m_dt, &form) == 1;
}

Parts Read_Parts(const COleDateTime& value) {
    SYSTEMTIME form;
    if (!Get_Calendar(value, form)) return {-1, -1, -1, -1, -1, -1};
    return {form.wYear, form.wMonth, form.wDay, form.wHour, form.wMinute, form.wSecond};
}

short Get_Part(const COleDateTime* value, WORD SYSTEMTIME::*part, ULONG line = __builtin_LINE()) {
    if (!value) {
        Report(kNoHeldValue, line);
        return 0;
    }
    SYSTEMTIME form;
    return Get_Calendar(*value, form) ? static_cast<short>(form.*part) : short{-1};
}

// The date of one and the time of day of the other.
void Set_From_Halves(COleDateTime& target, const Parts& date, const Parts& time) {
    Set_From_Calendar(target,
                      {date.year, date.month, date.day, time.hour, time.minute, time.second});
}

bool Set_Part(COleDateTime* value, int Parts::*part, short amount, unsigned short last,
              ULONG line = __builtin_LINE()) {
    if (!value) return Refuse(kNoHeldValue, line);
    if (static_cast<unsigned short>(amount) > last) return Refuse(kBadValue, line);
    Parts parts = Read_Parts(*value);
    parts.*part = amount;
    Set_From_Calendar(*value, parts);
    return value->m_status == COleDateTime::valid || Refuse(kPartRefused, line);
}

// The scale of numbers is not continuous below zero: -1.25 is 06:00 of the day before day 0. These
// two go to a scale that is, and back.
DATE To_Linear(DATE number) {
    if (number > -kHalfSecond) return number;
    const DATE day = std::ceil(number);
    return day - (number - day);
}

DATE From_Linear(DATE linear) {
    if (linear > -kHalfSecond) return linear;
    const DATE day = std::floor(linear);
    return day + (day - linear);
}

void Move(COleDateTime& value, DATE days) {
    value.m_dt = From_Linear(To_Linear(value.m_dt) + days);
    value.m_status = COleDateTime::valid;
}

// The sum of years and months; the day is fitted to the month reached.
Parts Add_Months(const Parts& parts, int years, int months) {
    Parts sum = parts;
    long long year = static_cast<long long>(parts.year) + years + months / 12;
    sum.month += months % 12;
    if (sum.month > 12) {
        sum.month -= 12;
        ++year;
    } else if (sum.month < 1) {
        sum.month += 12;
        --year;
    }
    sum.year = static_cast<int>(year);
    if (sum.day > 28 && sum.month == 2) {
        sum.day = RVDateTime::Is_Leap_Year(sum.year) ? 29 : 28;
    } else if (sum.day == 31 &&
               (sum.month == 4 || sum.month == 6 || sum.month == 9 || sum.month == 11)) {
        sum.day = 30;
    }
    return sum;
}

// The held value of the other side of a comparison.
const COleDateTime& Or_Invalid(const COleDateTime* value) {
    static constexpr COleDateTime kInvalid = {0.0, COleDateTime::invalid};
    return value ? *value : kInvalid;
}

template <class Number>
short Order(Number left, Number right) {
    return static_cast<short>(left < right ? -1 : left > right);
}

// Without a moment it lies behind every time of day.
ULONG Second_Of_Day(const Parts& parts) {
    return static_cast<ULONG>((parts.hour * 60 + parts.minute) * 60 + parts.second);
}

bool Are_Equal(const COleDateTime& left, const COleDateTime& right) {
    if (left.m_status != right.m_status) return false;
    if (left.m_status != COleDateTime::valid) return left.m_status == COleDateTime::null;
    return left.m_dt + kHalfSecond > right.m_dt && right.m_dt > left.m_dt - kHalfSecond;
}

bool Comes_Before(const COleDateTime& left, const COleDateTime& right) {
    return left.m_status == COleDateTime::valid && right.m_status == COleDateTime::valid &&
           To_Linear(left.m_dt) < To_Linear(right.m_dt);
}

LONG Zone_Offset() {
    LONG seconds = 0;
    _get_timezone(&seconds);
    return seconds;
}

// Sums of counts wrap around at 32 bits.
LONG Wrapped(LONGLONG seconds) {
    return static_cast<LONG>(static_cast<ULONG>(seconds));
}

// The hour of daylight saving that the zone adds at an instant; false when the platform cannot
// express it.
bool Read_Daylight_Shift(LONG time70, LONG& shift) {
    const __time32_t instant = time70;
    std::tm local;
    if (_localtime32_s(&local, &instant) != 0) return false;
    shift = local.tm_isdst > 0 ? kDaylightShift : 0;
    return true;
}

// Status `invalid` when the platform cannot express the instant.
COleDateTime Seconds_To_Value(__time64_t seconds) {
    COleDateTime value;
    std::tm local;
    if (_localtime64_s(&local, &seconds) != 0) {
        value.m_status = COleDateTime::invalid;
        return value;
    }
    SYSTEMTIME form = {};
    form.wYear = static_cast<WORD>(local.tm_year + 1900);
    form.wMonth = static_cast<WORD>(local.tm_mon + 1);
    form.wDayOfWeek = static_cast<WORD>(local.tm_wday);
    form.wDay = static_cast<WORD>(local.tm_mday);
    form.wHour = static_cast<WORD>(local.tm_hour);
    form.wMinute = static_cast<WORD>(local.tm_min);
    form.wSecond = static_cast<WORD>(local.tm_sec);
    Set_From_Form(value, form);
    return value;
}

COleDateTime Read_Local_Clock() {
    return Seconds_To_Value(_time64(nullptr));
}

constexpr bool Is_Digit(char character) {
    return character >= '0' && character <= '9';
}

// As atoi would read the field on its own, white space being that of the C locale. No field is long
// enough for an overflow.
int Read_Any_Field(std::string_view field) {
    std::size_t at = 0;
    while (at < field.size() && std::string_view(" \t\n\v\f\r").find(field[at]) != field.npos)
        ++at;
    bool negative = false;
    if (at < field.size() && (field[at] == '-' || field[at] == '+')) negative = field[at++] == '-';
    int number = 0;
    for (; at < field.size() && Is_Digit(field[at]); ++at)
        number = number * 10 + (field[at] - '0');
    return negative ? -number : number;
}

template <std::size_t kLength>
int Read_Field(const char* text) {
    int number = 0;
    for (std::size_t at = 0; at < kLength; ++at) {
        if (!Is_Digit(text[at])) return Read_Any_Field({text, kLength});
        number = number * 10 + (text[at] - '0');
    }
    return number;
}

// `text` has the length of a database text.
COleDateTime Read_Db_Text(std::string_view text) {
    COleDateTime value;
    const char* const at = text.data();
    Set_From_Calendar(value,
                      {Read_Field<4>(at), Read_Field<2>(at + 4), Read_Field<2>(at + 6),
                       Read_Field<2>(at + 8), Read_Field<2>(at + 10), Read_Field<2>(at + 12)});
    return value;
}

std::string_view View(const RVString& text) {
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

RVString Invalid_Text() {
    char text[kTextRoom];
    const int length = LoadStringA(GetModuleHandleA(nullptr), kInvalidTextResource, text,
                                   static_cast<int>(sizeof text));
    return length > 0 ? CString(text, length) : CString("Invalid DateTime");
}

char* Put_Two_Digits(char* at, unsigned number) {
    at[0] = static_cast<char>('0' + number / 10);
    at[1] = static_cast<char>('0' + number % 10);
    return at + 2;
}

// The year has four digits below 1000, too: with three the text would not be read again.
void Give_Db_Text(const COleDateTime& value, RVString& text) {
    UDATE parts;
    if (value.m_status == COleDateTime::null) {
        text.Empty();
    } else if (value.m_status == COleDateTime::invalid ||
               VarUdateFromDate(value.m_dt, 0, &parts) != S_OK) {
        text = Invalid_Text();
    } else {
        char digits[kDbTextLength];
        const SYSTEMTIME& form = parts.st;
        char* end = Put_Two_Digits(digits, form.wYear / 100U);
        for (const unsigned part :
             {form.wYear % 100U, unsigned{form.wMonth}, unsigned{form.wDay}, unsigned{form.wHour},
              unsigned{form.wMinute}, unsigned{form.wSecond}})
            end = Put_Two_Digits(end, part);
        text.SetString(digits, static_cast<int>(end - digits));
    }
}

// A new BSTR of a text; null when there is no memory for it, told by a trace.
BSTR Make_Wide(const RVString& text, const char* trace) {
    try {
        return text.Get_BSTR();
    } catch (CMemoryException* error) {
        pProgrammer_Trace(1, trace);
        error->Delete();
        return nullptr;
    }
}

// A text made wide, with its terminator.
class WideText {
public:
    WideText(const char* text, int length) {
        const int room = length + 1;
        if (room > kLocaleTextRoom)
            m_Block.reset(rv::Heap_Allocate(sizeof(OLECHAR) * static_cast<std::size_t>(room)));
        OLECHAR* const wide =
            room > kLocaleTextRoom ? static_cast<OLECHAR*>(m_Block.get()) : m_Room;
        if (wide && MultiByteToWideChar(CP_THREAD_ACP, 0, text, room, wide, room) != 0)
            m_Text = wide;
    }
    WideText(const WideText&) = delete;
    WideText& operator=(const WideText&) = delete;

    // Null when it could not be made.
    OLECHAR* Get() const { return m_Text; }

private:
    std::unique_ptr<void, rv::HeapDeleter> m_Block;
    OLECHAR m_Room[kLocaleTextRoom];
    OLECHAR* m_Text = nullptr;
};

// `length` leaves the terminator out. False leaves status `invalid`, and the number 0.0 for a text
// that is no date, else -1.0.
bool Parse_Text(COleDateTime& target, const char* text, int length, ULONG flags) {
    const WideText wide(text, length);
    if (!wide.Get()) {
        target = {0.0, COleDateTime::invalid};
        return false;
    }
    const HRESULT status = VarDateFromStr(wide.Get(), LOCALE_USER_DEFAULT, flags, &target.m_dt);
    if (status >= 0) {
        target.m_status = COleDateTime::valid;
        return true;
    }
    target = {status == DISP_E_TYPEMISMATCH ? 0.0 : -1.0, COleDateTime::invalid};
    return false;
}

bool Parse_Text(COleDateTime& target, const RVString& text, ULONG flags) {
    return Parse_Text(target, text.GetString(), text.GetLength(), flags);
}

RVString Format_Locale(const COleDateTime& value, ULONG flags) {
    if (value.m_status == COleDateTime::null) return {};
    CComBSTR text;
    if (value.m_status == COleDateTime::invalid ||
        VarBstrFromDate(value.m_dt, LOCALE_USER_DEFAULT, flags, &text) < 0)
        return Invalid_Text();
    return CString(text.m_str);
}

// Writes what one of the locale formatters gives, with a terminator, and gives its length; 0 where
// it fails. `text` has kLocaleTextRoom.
template <class Formatter>
int Write_Locale_Text(Formatter formatter, DWORD flags, const SYSTEMTIME& form, char* text) {
    const int length = formatter(LOCALE_USER_DEFAULT, flags, &form, nullptr, text, kLocaleTextRoom);
    if (length > 0) return length - 1;
    *text = '\0';
    return 0;
}

// `form` is null for a value without one. `text` has kTextRoom.
int Write_Date_Text(const COleDateTime& value, const SYSTEMTIME* form, char* text) {
    if (form) {
        const int length = Write_Locale_Text(GetDateFormatA, DATE_SHORTDATE, *form, text);
        COleDateTime read_back;
        if (Parse_Text(read_back, text, length, 0)) return length;
    }
    const RVString plain = Format_Locale(value, kFallbackFlags);
    const std::string_view fits = View(plain).substr(0, kTextRoom);
    return static_cast<int>(fits.copy(text, fits.size()));
}

}  // namespace

RVDateTime::HeldValue RVDateTime::Make_Held_Value(const COleDateTime& value) noexcept {
    void* const block = rv::Heap_Allocate(sizeof(COleDateTime));
    if (block) return HeldValue(new (block) COleDateTime(value));
    Report(kNoMemory);
    return nullptr;
}

RVDateTime::RVDateTime() : m_Value(Make_Held_Value({})) {}

RVDateTime::RVDateTime(const RVDateTime& other) : RVDateTime() {
    if (m_Value) *this = other;
}

RVDateTime::RVDateTime(RVString& db_text) {
    Init_Db_Date(db_text);
}

RVDateTime::RVDateTime(wchar_t* db_text) {
    RVString text(db_text);
    Init_Db_Date(text);
}

RVDateTime::RVDateTime(CComBSTR& db_text) : RVDateTime(db_text.m_str) {}

RVDateTime::RVDateTime(COleDateTime& value) : m_Value(Make_Held_Value(value)) {}

RVDateTime::RVDateTime(LONG seconds, bool time80) {
    const LONG time70 = time80 ? Time80_To_Time70(seconds) : seconds;
    m_Value = Make_Held_Value({});
    if (m_Value) *m_Value = Seconds_To_Value(time70);
}

RVDateTime::~RVDateTime() = default;

RVDateTime& RVDateTime::operator=(const RVDateTime& other) {
    if (!m_Value) {
        Report(kNoHeldValue);
    } else if (!other.m_Value) {
        Report(kNoHeldValue);
        m_Value->m_status = COleDateTime::invalid;
    } else {
        *m_Value = *other.m_Value;
    }
    return *this;
}

void RVDateTime::Init_Db_Date(RVString& db_text) {
    m_Value = Make_Held_Value({});
    if (m_Value && !Set_Db_Value(db_text)) Report(kBadValue);
}

bool RVDateTime::Set_Db_Value(RVString& db_text) {
    if (!m_Value) return Refuse(kNoHeldValue);
    const std::string_view text = db_text.IsEmpty() ? kDefaultDbText : View(db_text);
    if (text.size() != kDbTextLength) return Refuse(kBadValue);
    const COleDateTime value = Read_Db_Text(text);
    if (value.m_status != COleDateTime::valid) return false;
    *m_Value = value;
    return true;
}

bool RVDateTime::Set_Db_Value(wchar_t* db_text) {
    if (!m_Value) return Refuse(kNoHeldValue);
    RVString text(db_text);
    return Set_Db_Value(text);
}

bool RVDateTime::Set_Db_Value(CComBSTR& db_text) {
    return Set_Db_Value(db_text.m_str);
}

void RVDateTime::Get_Db_Value(RVString& db_text) {
    if (!m_Value) return Report(kNoHeldValue);
    Give_Db_Text(*m_Value, db_text);
    if (db_text.IsEmpty()) Report(kBadValue);
}

void RVDateTime::Get_Db_Value(wchar_t** db_text) {
    if (!m_Value) return Report(kNoHeldValue);
    if (!db_text) return Report(kNullPointer);
    RVString text;
    Give_Db_Text(*m_Value, text);
    if (text.IsEmpty()) return Report(kNoText);
    BSTR const wide =
        Make_Wide(text, "Unable to copy RVString into BSTR. RVDateTime::Get_Db_Value");
    if (wide) *db_text = wide;
}

void RVDateTime::Get_Db_Value(CComBSTR& db_text) {
    if (!m_Value) return Report(kNoHeldValue);
    RVString text;
    Give_Db_Text(*m_Value, text);
    if (text.IsEmpty()) return Report(kNoText);
    BSTR const wide =
        Make_Wide(text, "Unable to copy RVString into CComBSTR. RVDateTime::Get_Db_Value");
    if (wide) db_text.Attach(wide);
}

bool RVDateTime::Validate_Db_Value(RVString& db_text) {
    const std::string_view text = View(db_text);
    return text.size() == kDbTextLength && Read_Db_Text(text).m_status == COleDateTime::valid;
}

void RVDateTime::Get_Current_Db_Value(RVString& db_text) {
    RVDateTime now;
    if (now.m_Value) *now.m_Value = Read_Local_Clock();
    now.Get_Db_Value(db_text);
}

short RVDateTime::Get_Year() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wYear);
}
short RVDateTime::Get_Month() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wMonth);
}
short RVDateTime::Get_Day() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wDay);
}
short RVDateTime::Get_Hour() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wHour);
}
short RVDateTime::Get_Minute() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wMinute);
}
short RVDateTime::Get_Second() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wSecond);
}

short RVDateTime::Get_Day_Of_Week() {
    if (!m_Value) {
        Report(kNoHeldValue);
        return -1;
    }
    SYSTEMTIME form;
    return Get_Calendar(*m_Value, form) ? static_cast<short>(form.wDayOfWeek + 1) : short{-1};
}

bool RVDateTime::Is_Leap_Year() {
    return Is_Leap_Year(Get_Year());
}

bool RVDateTime::Is_Leap_Year(int year) {
    if (year < 1 || year > 9998) return Refuse(kBadValue);
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool RVDateTime::Set_Value(short year, short month, short day, short hour, short minute,
                           short second) {
    if (!m_Value) return Refuse(kNoHeldValue);
    Set_From_Calendar(*m_Value, {year, month, day, hour, minute, second});
    return m_Value->m_status == COleDateTime::valid || Refuse(kPartsRefused);
}

bool RVDateTime::Set_Date_Value(short year, short month, short day) {
    if (!m_Value) return Refuse(kNoHeldValue);
    COleDateTime date;
    Set_From_Calendar(date, {year, month, day, 0, 0, 0});
    if (date.m_status != COleDateTime::valid) return Refuse(kPartsRefused);
    Set_From_Halves(*m_Value, Read_Parts(date), Read_Parts(*m_Value));
    return true;
}

bool RVDateTime::Set_Time_Value(short hour, short minute, short second) {
    if (!m_Value) return Refuse(kNoHeldValue);
    COleDateTime time;
    Set_From_Calendar(time, {1899, 12, 30, hour, minute, second});
    if (time.m_status != COleDateTime::valid) return Refuse(kPartsRefused);
    Set_From_Halves(*m_Value, Read_Parts(*m_Value), Read_Parts(time));
    return true;
}

bool RVDateTime::Set_Time_Value(LONG seconds) {
    return Set_Time_Value(static_cast<short>(seconds / 3600), static_cast<short>(seconds / 60 % 60),
                          static_cast<short>(seconds % 60));
}

bool RVDateTime::Set_Hour(short hour) {
    return Set_Part(m_Value.get(), &Parts::hour, hour, 23);
}

bool RVDateTime::Set_Minute(short minute) {
    return Set_Part(m_Value.get(), &Parts::minute, minute, 59);
}

bool RVDateTime::Set_Second(short second) {
    return Set_Part(m_Value.get(), &Parts::second, second, 59);
}

void RVDateTime::Add_Date(int years, int months, int days) {
    if (!m_Value) return Report(kNoHeldValue);
    Set_From_Calendar(*m_Value, Add_Months(Read_Parts(*m_Value), years, months));
    Move(*m_Value, days);
}

void RVDateTime::Add_Time(int hours, int minutes, int seconds) {
    if (!m_Value) return Report(kNoHeldValue);
    Move(*m_Value, hours / 24.0 + minutes / 1440.0 + seconds / 86400.0);
}

short RVDateTime::Compare_Date(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    const Parts left = Read_Parts(*m_Value), right = Read_Parts(Or_Invalid(other.m_Value.get()));
    if (left.year != right.year) return Order(left.year, right.year);
    if (left.month != right.month) return Order(left.month, right.month);
    return Order(left.day, right.day);
}

short RVDateTime::Compare_Time(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    return Order(Second_Of_Day(Read_Parts(*m_Value)),
                 Second_Of_Day(Read_Parts(Or_Invalid(other.m_Value.get()))));
}

bool RVDateTime::operator==(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    return Are_Equal(*m_Value, Or_Invalid(other.m_Value.get()));
}

bool RVDateTime::operator!=(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    return !Are_Equal(*m_Value, Or_Invalid(other.m_Value.get()));
}

bool RVDateTime::Is_Less(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    return Comes_Before(*m_Value, Or_Invalid(other.m_Value.get()));
}

bool RVDateTime::Is_Less_Or_Equal(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    const COleDateTime& right = Or_Invalid(other.m_Value.get());
    return Comes_Before(*m_Value, right) || Are_Equal(*m_Value, right);
}

bool RVDateTime::Is_Greater(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    return Comes_Before(Or_Invalid(other.m_Value.get()), *m_Value);
}

bool RVDateTime::Is_Greater_Or_Equal(const RVDateTime& other) const {
    if (!m_Value) return Refuse(kNoHeldValue);
    const COleDateTime& right = Or_Invalid(other.m_Value.get());
    return Comes_Before(right, *m_Value) || Are_Equal(*m_Value, right);
}

bool RVDateTime::Set_Value(LONG seconds, bool time80) {
    if (!m_Value) return Refuse(kNoHeldValue);
    const COleDateTime value = Seconds_To_Value(time80 ? Time80_To_Time70(seconds) : seconds);
    if (value.m_status != COleDateTime::valid) return Refuse(kBadValue);
    *m_Value = value;
    return true;
}

void RVDateTime::Get_Value(LONG& seconds, bool time80) {
    const Parts parts = m_Value ? Read_Parts(*m_Value) : Parts{};
    if (!m_Value) Report(kNoHeldValue);
    if (parts.year < (time80 ? kFirstYearOfTime80 : kFirstYearOfTime70)) {
        seconds = 0;
        return;
    }
    std::tm local = {};
    local.tm_year = parts.year - 1900;
    local.tm_mon = parts.month - 1;
    local.tm_mday = parts.day;
    local.tm_hour = parts.hour;
    local.tm_min = parts.minute;
    local.tm_sec = parts.second;
    local.tm_isdst = -1;
    const __time64_t instant = _mktime64(&local);
    if (instant == -1) ATL::AtlThrow(E_INVALIDARG);
    seconds = time80 ? Time70_To_Time80(Wrapped(instant)) : Wrapped(instant);
}

LONG RVDateTime::Time70_To_Time80(LONG time70) {
    LONG shift;
    if (!Read_Daylight_Shift(time70, shift)) return Refuse(kBadValue);
    return Wrapped(LONGLONG{time70} + shift - Zone_Offset() - kSeconds1970To1980);
}

LONG RVDateTime::Time80_To_Time70(LONG time80) {
    const LONG standard = Wrapped(LONGLONG{Zone_Offset()} + kSeconds1970To1980 + time80);
    LONG shift;
    if (!Read_Daylight_Shift(standard, shift)) return Refuse(kBadValue);
    return Wrapped(LONGLONG{standard} - shift);
}

bool RVDateTime::Set_Value(COleDateTime& value) {
    if (!m_Value) return Refuse(kNoHeldValue);
    *m_Value = value;
    return true;
}

void RVDateTime::Get_Value(COleDateTime& value) {
    if (!m_Value) return Report(kNoHeldValue);
    value = *m_Value;
}

bool RVDateTime::Set_Date_Value(COleDateTime& value) {
    if (!m_Value) return Refuse(kNoHeldValue);
    Set_From_Halves(*m_Value, Read_Parts(value), Read_Parts(*m_Value));
    return m_Value->m_status == COleDateTime::valid;
}

bool RVDateTime::Set_Time_Value(COleDateTime& value) {
    if (!m_Value) return Refuse(kNoHeldValue);
    Set_From_Halves(*m_Value, Read_Parts(*m_Value), Read_Parts(value));
    return m_Value->m_status == COleDateTime::valid;
}

void RVDateTime::Get_Date_Value(COleDateTime& value) {
    if (!m_Value) return Report(kNoHeldValue);
    Set_From_Halves(value, Read_Parts(*m_Value), Read_Parts(value));
}

void RVDateTime::Get_Time_Value(COleDateTime& value) {
    if (!m_Value) return Report(kNoHeldValue);
    Set_From_Halves(value, Read_Parts(value), Read_Parts(*m_Value));
}

bool RVDateTime::Set_Value(CDateTimeCtrl& control) {
    COleDateTime shown;
    return control.GetTime(shown) && Set_Value(shown);
}

bool RVDateTime::Set_Date_Value(CDateTimeCtrl& control) {
    COleDateTime shown;
    return control.GetTime(shown) && Set_Date_Value(shown);
}

bool RVDateTime::Set_Time_Value(CDateTimeCtrl& control) {
    COleDateTime shown;
    return control.GetTime(shown) && Set_Time_Value(shown);
}

void RVDateTime::Get_Value(CDateTimeCtrl& control) {
    if (!m_Value) return Report(kNoHeldValue);
    control.SetTime(*m_Value);
}

void RVDateTime::Get_Date_Value(CDateTimeCtrl& control) {
    COleDateTime shown;
    control.GetTime(shown);
    Get_Date_Value(shown);
    control.SetTime(shown);
}

void RVDateTime::Get_Time_Value(CDateTimeCtrl& control) {
    COleDateTime shown;
    control.GetTime(shown);
    Get_Time_Value(shown);
    control.SetTime(shown);
}

void RVDateTime::Format_Display_String(RVString& text, COleDateTime& value, bool date, bool time) {
    SYSTEMTIME form;
    const bool has_form = Get_Calendar(value, form);
    char display[kTextRoom + 1 + kLocaleTextRoom];
    int length = 0;
    if (date) length = Write_Date_Text(value, has_form ? &form : nullptr, display);
    if (date && time) display[length++] = ' ';
    if (time && has_form) length += Write_Locale_Text(GetTimeFormatA, 0, form, display + length);
    text.SetString(display, length);
}

void RVDateTime::Get_Value(RVString& text) {
    if (!m_Value) return Report(kNoHeldValue);
    Format_Display_String(text, *m_Value, true, true);
}

void RVDateTime::Get_Date_Value(RVString& text) {
    if (!m_Value) return Report(kNoHeldValue);
    COleDateTime date = *m_Value;
    date.m_dt = std::trunc(date.m_dt);
    if (date.m_dt == 0.0) Report(kBadValue);
    Format_Display_String(text, date, true, false);
}

void RVDateTime::Get_Time_Value(RVString& text) {
    if (!m_Value) return Report(kNoHeldValue);
    COleDateTime time;
    Set_From_Halves(time, {1899, 12, 30, 0, 0, 0}, Read_Parts(*m_Value));
    Format_Display_String(text, time, false, true);
}

void RVDateTime::Get_Fixed_Date_Time(RVString& text) {
    const short year = Get_Year(), month = Get_Month(), day = Get_Day();
    const short hour = Get_Hour(), minute = Get_Minute(), second = Get_Second();
    char fixed[48];
    std::snprintf(fixed, sizeof fixed, "%.2d/%.2d/%.4d %.2d:%.2d:%.2d", month, day, year, hour,
                  minute, second);
    text = fixed;
}

void RVDateTime::Get_Current_Value(RVString* text) {
    if (!m_Value) return Report(kNoHeldValue);
    *m_Value = Read_Local_Clock();
    if (text) Format_Display_String(*text, *m_Value, true, true);
}

void RVDateTime::Get_Current_Date(RVString* text) {
    Get_Current_Value(text);
}

bool RVDateTime::Set_Value(RVString text) {
    if (!m_Value) return Refuse(kNoHeldValue);
    return Parse_Text(*m_Value, text, 0);
}

bool RVDateTime::Set_Date_Value(RVString& text) {
    if (!m_Value) return Refuse(kNoHeldValue);
    COleDateTime read;
    return Parse_Text(read, text, VAR_DATEVALUEONLY) && Set_Date_Value(read);
}

bool RVDateTime::Set_Time_Value(RVString& text) {
    if (!m_Value) return Refuse(kNoHeldValue);
    COleDateTime read;
    return Parse_Text(read, text, VAR_TIMEVALUEONLY) && Set_Time_Value(read);
}
