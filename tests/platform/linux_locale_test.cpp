// Dates and times as texts of many locales, which are built here.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>
#include <langinfo.h>
#include <locale.h>

#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "allocation_sweep.h"
#include "display_text.h"
#include "environment.h"
#include "test_locales.h"

namespace {

using rv_test::Date_Text;
using rv_test::Environment;
using rv_test::Form;
using rv_test::kRefused;
using rv_test::Read;
using rv_test::Time_Text;
using rv_test::Widen;

constexpr const char* kNames[] = {
    "en_US.UTF-8", "en_GB.UTF-8", "de_DE.UTF-8", "de_DE.ISO-8859-1", "fr_FR.UTF-8", "es_ES.UTF-8",
    "ca_ES.UTF-8", "eu_ES.UTF-8", "pt_BR.UTF-8", "sv_SE.UTF-8",      "fi_FI.UTF-8", "hu_HU.UTF-8",
    "bg_BG.UTF-8", "tr_TR.UTF-8", "ar_EG.UTF-8", "fa_IR.UTF-8",      "th_TH.UTF-8", "my_MM.UTF-8",
    "vi_VN.UTF-8", "ms_MY.UTF-8", "ja_JP.UTF-8", "zh_CN.UTF-8",      "ko_KR.UTF-8"};

// The encoding of the thread, which need not be that of the user's locale.
class Encoding {
public:
    explicit Encoding(const char* name) : m_Locale(newlocale(LC_CTYPE_MASK, name, nullptr)) {
        m_Before = uselocale(m_Locale);
    }
    Encoding(const Encoding&) = delete;
    Encoding& operator=(const Encoding&) = delete;
    ~Encoding() {
        uselocale(m_Before);
        freelocale(m_Locale);
    }

private:
    locale_t m_Locale;
    locale_t m_Before;
};

class LinuxLocale : public testing::Test {
protected:
    static void SetUpTestSuite() { s_Locales = std::make_unique<rv_test::TestLocales>(kNames); }
    static void TearDownTestSuite() { s_Locales.reset(); }

private:
    static inline std::unique_ptr<rv_test::TestLocales> s_Locales;
};

// Without the blanks around it, which a missing zone leaves.
std::string Trimmed(std::string text) {
    text.erase(0, text.find_first_not_of(' '));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// What the C library makes of it.
std::string Formatted(const char* format, const Form& form, locale_t locale) {
    std::tm moment = {};
    moment.tm_year = form[0] - 1900;
    moment.tm_mon = form[1] - 1;
    moment.tm_mday = form[2];
    moment.tm_hour = form[3];
    moment.tm_min = form[4];
    moment.tm_sec = form[5];
    timegm(&moment);  // fills in the day of the week
    // So that no zone is told.
    moment.tm_isdst = -1;
    moment.tm_zone = nullptr;
    char text[256] = "";
    return {text, strftime_l(text, sizeof text, format, &moment, locale)};
}

// In every encoding that the process may have meanwhile.
TEST_F(LinuxLocale, EveryTextIsThatOfTheCLibraryAndReadsBack) {
    for (const char* const name : kNames) {
        const Environment user("LC_ALL", name);
        const locale_t locale = newlocale(LC_TIME_MASK | LC_CTYPE_MASK, name, nullptr);
        ASSERT_TRUE(locale) << name;
        const std::string date_format = nl_langinfo_l(D_FMT, locale);
        const bool cuts_years = date_format.find("%y") != std::string::npos ||
                                date_format.find("%Oy") != std::string::npos;
        for (const char* const encoding : {"C", "C.UTF-8", "de_DE.ISO-8859-1", name}) {
            const Encoding thread(encoding);
            for (DATE number = -657434; number < 2958466; number += 997) {
                const Form date = rv_test::Form_Of(number);
                const std::string text = Date_Text(date);
                ASSERT_EQ(Read(Widen(text), 0), date) << name << ' ' << text;
                const std::wstring plain = rv_test::Plain_Date_Text(number);
                ASSERT_EQ(Read(plain, VAR_DATEVALUEONLY), date) << name << ' ' << plain;
                const int year = date[0];
                if (cuts_years ? year >= 1930 && year < 2030 : year >= 1000) {
                    ASSERT_EQ(text, Formatted("%x", date, locale)) << name;
                }
            }
            for (int seconds = 0; seconds < 86400; seconds += 613) {
                const Form time = {2003, 2, 1, seconds / 3600, seconds / 60 % 60, seconds % 60};
                const std::string text = Time_Text(time);
                ASSERT_EQ(Read(Widen(Date_Text(time) + ' ' + text), 0), time) << name << text;
                ASSERT_EQ(Read(Widen(text + ' ' + Date_Text(time)), 0), time) << name << text;
                const Form alone = {1899, 12, 30, time[3], time[4], time[5]};
                ASSERT_EQ(Read(Widen(text), VAR_TIMEVALUEONLY), alone) << name << text;
                // It lacks words for the halves of the day.
                if (name != std::string("ms_MY.UTF-8")) {
                    ASSERT_EQ(Trimmed(text), Trimmed(Formatted("%X", time, locale))) << name;
                }
            }
        }
        freelocale(locale);
    }
}

TEST_F(LinuxLocale, KnownTexts) {
    constexpr struct {
        const char* name;
        Form form;
        const char *date, *time;
    } kRows[] = {
        {"C", {850, 2, 1}, "02/01/0850", "00:00:00"},
        {"en_GB.UTF-8", {1929, 12, 31}, "31/12/1929", "00:00:00"},
        {"en_GB.UTF-8", {1930, 1, 1}, "01/01/30", "00:00:00"},
        {"en_GB.UTF-8", {2029, 12, 31}, "31/12/29", "00:00:00"},
        {"en_GB.UTF-8", {850, 2, 1}, "01/02/0850", "00:00:00"},
        {"ms_MY.UTF-8", {2003, 2, 1, 14, 5, 6}, "Sabtu 01 Feb 2003", "14:05:06"},
        {"th_TH.UTF-8", {2003, 2, 1}, "01/02/2546", "00:00:00"},
        {"th_TH.UTF-8", {100, 2, 1}, "01/02/0643", "00:00:00"},
        {"fa_IR.UTF-8", {2003, 2, 1}, "۰۳/۰۲/۰۱", "۰۰:۰۰:۰۰"},
        {"fa_IR.UTF-8", {850, 2, 1}, "۰۸۵۰/۰۲/۰۱", "۰۰:۰۰:۰۰"},
        {"eu_ES.UTF-8", {2003, 2, 1}, "lr., 2003.eko otsren 01a", "00:00:00"},
    };
    for (const auto& row : kRows) {
        const Environment user("LC_ALL", row.name);
        EXPECT_EQ(Date_Text(row.form), row.date) << row.name;
        EXPECT_EQ(Time_Text(row.form), row.time) << row.name;
    }
    for (const auto& [name, plain] : {std::pair("en_GB.UTF-8", L"01/02/2003"),
                                      {"sv_SE.UTF-8", L"2003-02-01"},
                                      {"th_TH.UTF-8", L"01/02/2546"},
                                      {"fa_IR.UTF-8", L"2003-02-01"}}) {
        const Environment user("LC_ALL", name);
        EXPECT_EQ(rv_test::Plain_Date_Text(37653), plain) << name;
    }
}

TEST_F(LinuxLocale, ReadsWhatPeopleWrite) {
    constexpr Form kDate = {2003, 2, 1}, kMarch = {2003, 3, 1};
    constexpr struct {
        const char *name, *text;
        Form form;
        ULONG flags = 0;
    } kRows[] = {
        {"de_DE.UTF-8", "1.2.03", kDate},
        {"de_DE.UTF-8", "1/2-2003", kDate},
        {"de_DE.UTF-8", "2003-02-01", kDate},
        {"de_DE.UTF-8", "1. Februar 2003 16:05", {2003, 2, 1, 16, 5}},
        {"de_DE.UTF-8", "Samstag, den 1. Februar 2003", kRefused},
        {"de_DE.UTF-8", "Sa., 1. Feb. 2003", kDate},
        {"de_DE.UTF-8", "1 MÄRZ 2003", kMarch},
        {"de_DE.UTF-8", "13/31/2003", kRefused},
        {"fr_FR.UTF-8", "SAMEDI 1 FÉVRIER 2003", kDate},
        {"fr_FR.UTF-8", "1 fevrier 2003", kRefused},
        {"fr_FR.UTF-8", "1 févr 2003", kDate},
        {"es_ES.UTF-8", "mar 4 mar 2003", {2003, 3, 4}},
        {"es_ES.UTF-8", "4 mar 2003", {2003, 3, 4}},
        {"es_ES.UTF-8", "mar 4 febrero 2003", {2003, 2, 4}},
        {"ca_ES.UTF-8", "1 de febrer 2003", kDate},
        {"ca_ES.UTF-8", "1 febrer 2003", kDate},
        {"tr_TR.UTF-8", "SALI 4 KASIM 2003", {2003, 11, 4}},
        {"tr_TR.UTF-8", "4 EKİM 2003", {2003, 10, 4}},
        {"tr_TR.UTF-8", "4 ekim 2003", {2003, 10, 4}},
        {"bg_BG.UTF-8", "1 ФЕВРУАРИ 2003", kDate},
        {"sv_SE.UTF-8", "03-02-01", kDate},
        {"sv_SE.UTF-8", "1 februari 2003", kDate},
        {"fi_FI.UTF-8", "1.2.2003 4.05", {2003, 2, 1, 4, 5}},
        {"fi_FI.UTF-8", "4.05.06", {2006, 5, 4}},
        {"fi_FI.UTF-8", "4.05.06", {1899, 12, 30, 4, 5, 6}, VAR_TIMEVALUEONLY},
        {"fi_FI.UTF-8", "13.45.06", {1899, 12, 30, 13, 45, 6}},
        {"fi_FI.UTF-8", "4.05", {1899, 12, 30, 4, 5}, VAR_TIMEVALUEONLY},
        {"th_TH.UTF-8", "1/2/46", kDate},
        {"th_TH.UTF-8", "2003-02-01", kDate},
        {"fa_IR.UTF-8", "۲۰۰۳/۲/۱", kDate},
        {"ja_JP.UTF-8", "2003年2月1日 4時5分", {2003, 2, 1, 4, 5}},
        {"ja_JP.UTF-8", "午後4時5分6秒", {1899, 12, 30, 16, 5, 6}},
        {"ja_JP.UTF-8", "4時5分 2003年2月1日", {2003, 2, 1, 4, 5}},
        {"ja_JP.UTF-8", "1日2月2003年", kRefused},
        {"ja_JP.UTF-8", "平成15年2月1日", kRefused},
        {"ko_KR.UTF-8", "2003년 2월 1일 오후 4:05", {2003, 2, 1, 16, 5}},
        {"ko_KR.UTF-8", "2003-2-1 오후 4:05", {2003, 2, 1, 16, 5}},
        {"en_US.UTF-8", "2/1/2003 PM 4:05", {2003, 2, 1, 16, 5}},
        {"en_US.UTF-8", "4 PM 2/1/2003", {2003, 2, 1, 16}},
        {"de_DE.ISO-8859-1", "1. M\xC4RZ 2003", kMarch},
        {"de_DE.ISO-8859-1", "1. M\xE4rz 2003", kMarch},
        {"de_DE.ISO-8859-1", "1. MÄRZ 2003", kRefused},
        {"C", "1. M\xE4rz 2003", kRefused},
    };
    for (const auto& row : kRows) {
        const Environment user("LC_ALL", row.name);
        for (const char* const encoding : {"C", "C.UTF-8", "de_DE.ISO-8859-1"}) {
            const Encoding thread(encoding);
            EXPECT_EQ(Read(Widen(row.text), row.flags), row.form) << row.name << ' ' << row.text;
        }
    }
}

TEST_F(LinuxLocale, IsTheOneOfTheEnvironmentAtEachCall) {
    constexpr struct {
        const char *all, *time, *lang, *date;
    } kRows[] = {
        {"de_DE.UTF-8", "sv_SE.UTF-8", "ja_JP.UTF-8", "01.02.2003"},
        {"", "sv_SE.UTF-8", "ja_JP.UTF-8", "2003-02-01"},
        {"", "", "ja_JP.UTF-8", "2003年02月01日"},
        {"xx_XX", "sv_SE.UTF-8", "ja_JP.UTF-8", "02/01/2003"},
        {"../de_DE.UTF-8", "", "", "02/01/2003"},
        {"POSIX", "sv_SE.UTF-8", "", "02/01/2003"},
        {"C.UTF-8", "sv_SE.UTF-8", "", "02/01/2003"},
        {"", "", "", "02/01/2003"},
    };
    for (const auto& row : kRows) {
        const Environment all("LC_ALL", row.all), time("LC_TIME", row.time), lang("LANG", row.lang);
        EXPECT_EQ(Date_Text({2003, 2, 1}), row.date);
        const Environment elsewhere("LOCPATH", "/nowhere");
        EXPECT_EQ(Date_Text({2003, 2, 1}), "02/01/2003");
    }
}

// More locales than are kept, each by several threads.
TEST_F(LinuxLocale, ServesManyLocalesAndThreads) {
    for (int round = 0; round < 3; ++round)
        for (const char* const name : kNames) {
            const Environment user("LC_ALL", name);
            const std::string expected = Date_Text({2003, 2, 1});
            std::vector<std::string> texts(4);
            std::vector<std::thread> threads;
            for (std::string& text : texts)
                threads.emplace_back([&text] { text = Date_Text({2003, 2, 1}); });
            for (std::thread& thread : threads)
                thread.join();
            EXPECT_EQ(texts, std::vector<std::string>(4, expected)) << name;
        }
}

TEST_F(LinuxLocale, TellsThatThereIsNoMemory) {
    const Environment user("LC_ALL", "unknown");
    const SYSTEMTIME moment = rv_test::Moment_Of({2003, 2, 1});
    const auto use = [&moment] {
        char text[64] = "#";
        if (GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &moment, nullptr, text, 64) == 0) {
            EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
            EXPECT_STREQ(text, "#");
        }
        DATE number = 7;
        const HRESULT read = VarDateFromStr(L"02/01/2003", LOCALE_USER_DEFAULT, 0, &number);
        EXPECT_EQ(read, number == 7 ? E_OUTOFMEMORY : S_OK);
        BSTR plain = nullptr;
        const HRESULT written =
            VarBstrFromDate(37653, LOCALE_USER_DEFAULT, VAR_DATEVALUEONLY, &plain);
        EXPECT_EQ(written, plain ? S_OK : E_OUTOFMEMORY);
        SysFreeString(plain);
    };
    EXPECT_EQ(rv_test::Sweep_Allocations(use, rv_test::FailingAllocation::Mode::kFromThereOn), 2)
        << "the locale's and the text's";
}

}  // namespace
