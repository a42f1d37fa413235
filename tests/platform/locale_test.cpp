// Dates and times as texts, in the forms that month-first locales share.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "display_text.h"
#include "environment.h"

namespace {

using rv_test::Form;
using rv_test::Form_Of;
using rv_test::kRefused;
using rv_test::Read;

class Locale : public testing::Test {
private:
    // On Windows it is the user's, an American one under Wine.
    rv_test::Environment m_Environment{"LC_ALL", "C"};
};

TEST_F(Locale, ReadsDatesAndTimes) {
    constexpr Form kDate = {2003, 2, 1}, kMoment = {2003, 2, 1, 4, 5, 6};
    constexpr struct {
        const wchar_t* text;
        ULONG flags;
        Form form;
    } kRows[] = {
        {L"02/01/2003 04:05:06", 0, kMoment},
        {L"4:05:06 2/1/2003", 0, kMoment},
        {L" 2-1-2003,\t04:05:06  ", 0, kMoment},
        {L"2/1/2003", 0, kDate},
        {L"2003-02-01", 0, kDate},
        {L"Feb 1, 2003", 0, kDate},
        {L"1 february 2003", 0, kDate},
        {L"SATURDAY, February 1, 2003", 0, kDate},
        {L"Sun 2/1/2003", 0, kDate},  // whichever day it was
        {L"2/1/03", 0, kDate},
        {L"12/31/29", 0, {2029, 12, 31}},
        {L"1/1/99", 0, {1999, 1, 1}},
        {L"2/1/0850", 0, {850, 2, 1}},
        {L"2/29/2000", 0, {2000, 2, 29}},
        {L"10:20", 0, {1899, 12, 30, 10, 20}},
        {L"3 PM", 0, {1899, 12, 30, 15}},
        {L"13:00 PM", 0, {1899, 12, 30, 13}},
        {L"12:30:59 am", 0, {1899, 12, 30, 0, 30, 59}},
        {L"12:30PM 2/1/2003", 0, {2003, 2, 1, 12, 30}},
        {L"12/28/1899 06:00:00", 0, {1899, 12, 28, 6}},
        {L"02/01/2003 04:05:06", VAR_DATEVALUEONLY, kDate},
        {L"02/01/2003 04:05:06", VAR_TIMEVALUEONLY, {1899, 12, 30, 4, 5, 6}},
        {L"12/28/1899 06:00:00", VAR_DATEVALUEONLY, {1899, 12, 28}},
        {L"12/28/1899 06:00:00", VAR_TIMEVALUEONLY, {1899, 12, 30, 6}},
#if !defined(_WIN32)  // Wine 8 takes the half that is missing as midnight or day 0
        {L"2/1/2003", VAR_TIMEVALUEONLY, kRefused},
        {L"10:20", VAR_DATEVALUEONLY, kRefused},
#endif
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Read(row.text, row.flags), row.form) << row.text << " flags " << row.flags;
    DATE number = 0;
    wchar_t text[] = L"12/31/2029 23:59:58";
    ASSERT_EQ(VarDateFromStr(text, LOCALE_USER_DEFAULT, VAR_TIMEVALUEONLY, &number), S_OK);
    EXPECT_EQ(number, 86398 / 86400.0) << "as exact as without a date";
}

TEST_F(Locale, RefusesWhatIsNone) {
    // clang-format off
    std::vector<std::wstring> texts = {
        L"", L"   ", L"12", L"junk", L"Feb", L"Saturday", L"PM", L"20030201", L"2/1/2003 junk",
        L"2/31/2003", L"2/29/2001", L"31 Feb 2003", L"25:00", L"24:00", L"10:60", L"10:20:60",
        L"10:20:", L"10:20:30.5", L"10:", L":10", L"/2/1/2003", L"2/1/2003/", L"2//1//2003",
        L"2/1/2003 2/1/2003", L"10:20 10:20", L"Feb 1 2003 Feb", L"10:20 AM PM", L"-2/1/2003",
        L"2/1/2003 25:00", L"\x20AC"};
    // clang-format on
#if !defined(_WIN32)  // Wine 8 reads 2003 modulo 65536, this year and 1999 from the others
    texts.insert(texts.end(), {L"2/1/67539", L"1/1/0099", std::wstring(10000, L' ') + L"2/1",
                               std::wstring(10000, L'a')});
#endif
    for (const std::wstring& text : texts)
        for (ULONG flags = 0; flags < 3; ++flags)
            EXPECT_EQ(Read(text, flags), kRefused) << text;
    DATE number = 7;
    EXPECT_EQ(VarDateFromStr(nullptr, LOCALE_USER_DEFAULT, 0, &number), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(number, 7);
#if !defined(_WIN32)  // Wine 8 writes 0
    wchar_t text[] = L"junk";
    EXPECT_EQ(VarDateFromStr(text, LOCALE_USER_DEFAULT, 0, &number), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(number, 7);
#endif
}

// Whether the locale gives years two digits or four.
TEST_F(Locale, EveryTextReadsBack) {
    for (DATE number = -657434; number < 2958466; number += 97) {
        const Form date = Form_Of(number);
        // The system has short dates from 1601 on.
        if (date[0] > 1600) {
            const std::string text = rv_test::Date_Text(date);
            ASSERT_EQ(Read(rv_test::Widen(text), 0), date) << text;
        }
        const std::wstring plain = rv_test::Plain_Date_Text(number);
        ASSERT_EQ(Read(plain, VAR_DATEVALUEONLY), date) << plain;
    }
    for (int seconds = 0; seconds < 86400; seconds += 61) {
        const Form time = {1899, 12, 30, seconds / 3600, seconds / 60 % 60, seconds % 60};
        const std::string text = rv_test::Time_Text(time);
        ASSERT_EQ(Read(rv_test::Widen(text), VAR_TIMEVALUEONLY), time) << text;
    }
}

TEST_F(Locale, RefusesToFormat) {
    const SYSTEMTIME good = {2003, 2, 0, 1, 4, 5, 6, 0};
    SYSTEMTIME bad_date = good, bad_time = good;
    bad_date.wDay = 31;
    bad_time.wHour = 24;
    char text[64] = "#";
    constexpr LCID kUser = LOCALE_USER_DEFAULT, kOther = 0x7777;
    const auto date = [](LCID locale, const SYSTEMTIME& moment, char* buffer, int room) {
        const int size = GetDateFormatA(locale, DATE_SHORTDATE, &moment, nullptr, buffer, room);
        return size == 0 ? GetLastError() : DWORD{ERROR_SUCCESS};
    };
    const auto time = [&text](LCID locale, const SYSTEMTIME& moment) {
        const int size = GetTimeFormatA(locale, 0, &moment, nullptr, text, sizeof text);
        return size == 0 ? GetLastError() : DWORD{ERROR_SUCCESS};
    };
    constexpr DWORD kInvalid = ERROR_INVALID_PARAMETER;
    EXPECT_EQ(date(kOther, good, text, 64), kInvalid);
    EXPECT_EQ(date(kUser, bad_date, text, 64), kInvalid);
    EXPECT_EQ(date(kUser, good, nullptr, 64), kInvalid);
    EXPECT_EQ(date(kUser, good, text, -1), kInvalid);
    EXPECT_EQ(time(kOther, good), kInvalid);
    EXPECT_EQ(time(kUser, bad_time), kInvalid);
    EXPECT_STREQ(text, "#");
    EXPECT_EQ(date(kUser, bad_time, text, 64), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(time(kUser, bad_date), DWORD{ERROR_SUCCESS});
    const int needed = GetDateFormatA(kUser, DATE_SHORTDATE, &good, nullptr, nullptr, 0);
    EXPECT_EQ(date(kUser, good, text, needed), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(date(kUser, good, text, needed - 1), DWORD{ERROR_INSUFFICIENT_BUFFER});
    for (const DATE number : {-657435.0, 2958466.0, 1e300})
        EXPECT_EQ(rv_test::Plain_Date_Text(number), L"(none)");
}

}  // namespace
