// The languages that locales stand for.
#include <RVUtils/RVLanguageManager.h>
#include <gtest/gtest.h>

#include "environment.h"

namespace {

using rv_test::Environment;

TEST(LinuxLanguage, TheUsersIsThatOfTheLocale) {
    constexpr struct {
        const char *all, *messages, *lang;
        unsigned short language;
    } kRows[] = {
        {"", "", "", 0x409},
        {"", "", "de_DE.UTF-8", 0x407},
        {"", "fi_FI@euro", "de_DE.UTF-8", 0x40B},
        {"fr_CH", "fi_FI", "de_DE", 0x100C},
        {"de_AT.ISO-8859-15@euro", "", "", 0xC07},
        {"de", "", "", 0x407},
        {"de_XX", "", "", 0x407},
        {"pt", "", "", 0x416},
        {"pt_PT.UTF-8", "", "", 0x816},
        {"sr_RS", "", "", 0x281A},
        {"sr_RS.UTF-8@latin", "", "", 0x241A},
        {"zh_TW.UTF-8", "", "", 0x404},
        {"nb_NO", "", "", 0x414},
        {"zu_ZA", "", "", 0x435},
        {"C", "", "de_DE", 0x409},
        {"POSIX", "", "", 0x409},
        {"C.UTF-8", "", "", 0x409},
        {"xx_YY", "", "", 0x409},
        {"_@.", "", "", 0x409},
    };
    for (const auto& row : kRows) {
        const Environment all("LC_ALL", row.all), messages("LC_MESSAGES", row.messages),
            lang("LANG", row.lang);
        unsigned short first = 0, second = 0;
        rvGet_Language_Id(&first, &second);
        EXPECT_EQ(second, row.language) << row.all << ' ' << row.messages << ' ' << row.lang;
        EXPECT_NE(first, 0);
    }
}

}  // namespace
