// Short ways through the functions for dates and times as texts.
#pragma once

#include <RVUtils/winapi.h>

#include <array>
#include <string>

namespace rv_test {

using Form = std::array<int, 6>;  // year to second
constexpr Form kRefused = {};

inline Form Form_Of(const SYSTEMTIME& moment) {
    return {moment.wYear, moment.wMonth, moment.wDay, moment.wHour, moment.wMinute, moment.wSecond};
}

inline Form Form_Of(DATE number) {
    SYSTEMTIME moment = {};
    return VariantTimeToSystemTime(number, &moment) == 1 ? Form_Of(moment) : kRefused;
}

inline SYSTEMTIME Moment_Of(const Form& form) {
    const auto word = [&form](std::size_t index) { return static_cast<WORD>(form[index]); };
    // The day of the week is not looked at.
    return {word(0), word(1), 9, word(2), word(3), word(4), word(5), 0};
}

// What a text reads as.
inline Form Read(std::wstring text, ULONG flags) {
    DATE number = 0;
    const HRESULT status = VarDateFromStr(text.data(), LOCALE_USER_DEFAULT, flags, &number);
    return status < 0 ? kRefused : Form_Of(number);
}

inline std::wstring Widen(const std::string& text) {
    wchar_t wide[256] = L"";
    MultiByteToWideChar(CP_THREAD_ACP, 0, text.c_str(), -1, wide, 256);
    return wide;
}

// By one of the two functions below.
inline std::string Display_Text(decltype(GetDateFormatA) format, DWORD flags, const Form& form) {
    const SYSTEMTIME moment = Moment_Of(form);
    char text[256] = "";
    const int length = format(LOCALE_USER_DEFAULT, flags, &moment, nullptr, text, sizeof text);
    return length == 0 ? "(none)" : std::string(text, static_cast<std::size_t>(length) - 1);
}

inline std::string Date_Text(const Form& form) {
    return Display_Text(GetDateFormatA, DATE_SHORTDATE, form);
}

inline std::string Time_Text(const Form& form) {
    return Display_Text(GetTimeFormatA, 0, form);
}

// The one that stands for a date without a text of its own.
inline std::wstring Plain_Date_Text(DATE number) {
    BSTR text = nullptr;
    const HRESULT status = VarBstrFromDate(number, LOCALE_USER_DEFAULT,
                                           LOCALE_NOUSEROVERRIDE | VAR_DATEVALUEONLY, &text);
    if (status < 0) return L"(none)";
    const std::wstring copy(text, SysStringLen(text));
    SysFreeString(text);
    return copy;
}

}  // namespace rv_test
