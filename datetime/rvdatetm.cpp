#include "rvdatetm.h"

#include <ctime>
#include <new>
#include <string_view>
#include <type_traits>

#include "../frame/RVDev.h"
#include "../platform/winapi.h"

// rv::HeapDeleter frees the record without a destructor.
static_assert(std::is_trivially_destructible_v<COleDateTime>);

namespace {

enum ReportCode : unsigned int {
    kBadValue = 13,
    kPartsRefused = 17,
    kNoHeldValue = 18,
    kNoMemory = 23,
};

constexpr const char* kOutputTemplate = "%Y%m%d%H%M%S";
constexpr std::string_view kDefaultDbText = "19800101000001";
constexpr std::size_t kDbTextLength = 14;

constexpr UINT kInvalidTextResource = 55296;
constexpr std::size_t kTextRoom = 256;

void Report(ReportCode code, ULONG line) {
    pProgrammer_Error(code, "rvdatetm", line, true);
}

// The result of an operation that ends with its report.
bool Refuse(ReportCode code, ULONG line) {
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

short Get_Part(const COleDateTime* value, WORD SYSTEMTIME::*part, ULONG line) {
    if (!value) {
        Report(kNoHeldValue, line);
        return 0;
    }
    SYSTEMTIME form;
    return Get_Calendar(*value, form) ? static_cast<short>(form.*part) : short{-1};
}

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
int Read_Field(std::string_view field) {
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

// `text` has the length of a database text.
COleDateTime Read_Db_Text(std::string_view text) {
    COleDateTime value;
    Set_From_Calendar(value, {Read_Field(text.substr(0, 4)), Read_Field(text.substr(4, 2)),
                              Read_Field(text.substr(6, 2)), Read_Field(text.substr(8, 2)),
                              Read_Field(text.substr(10, 2)), Read_Field(text.substr(12, 2))});
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

// Puts the year into a template in place of %Y. The C libraries differ in the width of a year below
// 1000, and a database text must have its 14 characters.
void Fill_In_Year(const char* format, unsigned year, char (&out)[kTextRoom]) {
    const char digits[] = {
        static_cast<char>('0' + year / 1000 % 10), static_cast<char>('0' + year / 100 % 10),
        static_cast<char>('0' + year / 10 % 10), static_cast<char>('0' + year % 10)};
    std::size_t length = 0;
    while (*format && length + sizeof digits < kTextRoom) {
        const std::size_t taken = format[0] == '%' && format[1] ? 2 : 1;
        const std::string_view piece = taken == 2 && format[1] == 'Y'
                                           ? std::string_view(digits, sizeof digits)
                                           : std::string_view(format, taken);
        length += piece.copy(out + length, piece.size());
        format += taken;
    }
    out[length] = '\0';
}

std::tm Broken_Down(const UDATE& parts) {
    std::tm time = {};
    time.tm_sec = parts.st.wSecond;
    time.tm_min = parts.st.wMinute;
    time.tm_hour = parts.st.wHour;
    time.tm_mday = parts.st.wDay;
    time.tm_mon = parts.st.wMonth - 1;
    time.tm_year = parts.st.wYear - 1900;
    time.tm_wday = parts.st.wDayOfWeek;
    time.tm_yday = parts.wDayOfYear - 1;
    return time;
}

RVString Format_Template(const COleDateTime& value, const char* format) {
    if (value.m_status == COleDateTime::null) return {};
    UDATE parts;
    if (value.m_status == COleDateTime::invalid || VarUdateFromDate(value.m_dt, 0, &parts) != S_OK)
        return Invalid_Text();
    char with_year[kTextRoom];
    Fill_In_Year(format, parts.st.wYear, with_year);
    const std::tm time = Broken_Down(parts);
    char text[kTextRoom];
    // A text that does not fit is left undefined in the buffer, with length 0.
    text[std::strftime(text, sizeof text, with_year, &time)] = '\0';
    return text;
}

}  // namespace

RVDateTime::HeldValue RVDateTime::Make_Held_Value(const COleDateTime& value) noexcept {
    void* const block = rv::Heap_Allocate(sizeof(COleDateTime));
    if (block) return HeldValue(new (block) COleDateTime(value));
    Report(kNoMemory, __LINE__);
    return nullptr;
}

RVDateTime::RVDateTime() : m_Value(Make_Held_Value({})) {}

RVDateTime::RVDateTime(const RVDateTime& other) : RVDateTime() {
    if (m_Value) *this = other;
}

RVDateTime::RVDateTime(RVString& db_text) {
    Init_Db_Date(db_text);
}

RVDateTime::RVDateTime(COleDateTime& value) : m_Value(Make_Held_Value(value)) {}

RVDateTime::~RVDateTime() = default;

RVDateTime& RVDateTime::operator=(const RVDateTime& other) {
    if (!m_Value) {
        Report(kNoHeldValue, __LINE__);
    } else if (!other.m_Value) {
        Report(kNoHeldValue, __LINE__);
        m_Value->m_status = COleDateTime::invalid;
    } else {
        *m_Value = *other.m_Value;
    }
    return *this;
}

void RVDateTime::Init_Db_Date(RVString& db_text) {
    m_Value = Make_Held_Value({});
    if (m_Value && !Set_Db_Value(db_text)) Report(kBadValue, __LINE__);
}

bool RVDateTime::Set_Db_Value(RVString& db_text) {
    if (!m_Value) return Refuse(kNoHeldValue, __LINE__);
    const std::string_view text = db_text.IsEmpty() ? kDefaultDbText : View(db_text);
    if (text.size() != kDbTextLength) return Refuse(kBadValue, __LINE__);
    const COleDateTime value = Read_Db_Text(text);
    if (value.m_status != COleDateTime::valid) return false;
    *m_Value = value;
    return true;
}

void RVDateTime::Get_Db_Value(RVString& db_text) {
    if (!m_Value) {
        Report(kNoHeldValue, __LINE__);
        return;
    }
    db_text = Format_Template(*m_Value, kOutputTemplate);
    if (db_text.IsEmpty()) Report(kBadValue, __LINE__);
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
    return Get_Part(m_Value.get(), &SYSTEMTIME::wYear, __LINE__);
}
short RVDateTime::Get_Month() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wMonth, __LINE__);
}
short RVDateTime::Get_Day() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wDay, __LINE__);
}
short RVDateTime::Get_Hour() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wHour, __LINE__);
}
short RVDateTime::Get_Minute() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wMinute, __LINE__);
}
short RVDateTime::Get_Second() {
    return Get_Part(m_Value.get(), &SYSTEMTIME::wSecond, __LINE__);
}

bool RVDateTime::Set_Value(short year, short month, short day, short hour, short minute,
                           short second) {
    if (!m_Value) return Refuse(kNoHeldValue, __LINE__);
    Set_From_Calendar(*m_Value, {year, month, day, hour, minute, second});
    return m_Value->m_status == COleDateTime::valid || Refuse(kPartsRefused, __LINE__);
}

bool RVDateTime::Set_Date_Value(short year, short month, short day) {
    if (!m_Value) return Refuse(kNoHeldValue, __LINE__);
    COleDateTime date;
    Set_From_Calendar(date, {year, month, day, 0, 0, 0});
    if (date.m_status != COleDateTime::valid) return Refuse(kPartsRefused, __LINE__);
    const Parts own = Read_Parts(*m_Value);
    Set_From_Calendar(*m_Value, {year, month, day, own.hour, own.minute, own.second});
    return true;
}

bool RVDateTime::Set_Time_Value(short hour, short minute, short second) {
    if (!m_Value) return Refuse(kNoHeldValue, __LINE__);
    COleDateTime time;
    Set_From_Calendar(time, {1899, 12, 30, hour, minute, second});
    if (time.m_status != COleDateTime::valid) return Refuse(kPartsRefused, __LINE__);
    const Parts own = Read_Parts(*m_Value);
    Set_From_Calendar(*m_Value, {own.year, own.month, own.day, hour, minute, second});
    return true;
}

bool RVDateTime::Set_Value(COleDateTime& value) {
    if (!m_Value) return Refuse(kNoHeldValue, __LINE__);
    *m_Value = value;
    return true;
}

void RVDateTime::Get_Value(COleDateTime& value) {
    if (!m_Value) {
        Report(kNoHeldValue, __LINE__);
        return;
    }
    value = *m_Value;
}

void RVDateTime::Get_Current_Value(std::nullptr_t) {
    if (!m_Value) {
        Report(kNoHeldValue, __LINE__);
        return;
    }
    *m_Value = Read_Local_Clock();
}
