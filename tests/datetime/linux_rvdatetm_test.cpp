// Display texts in the user's locale, which the environment names.
#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

#include "environment.h"
#include "test_locales.h"

namespace {

TEST(DateTimeLocale, ShowsAndReadsTheUsersForms) {
    constexpr const char* kNames[] = {"en_US.UTF-8", "en_GB.UTF-8", "de_DE.UTF-8", "ja_JP.UTF-8"};
    constexpr const char* kTexts[] = {"02/01/2003 02:05:06 PM", "01/02/03 14:05:06",
                                      "01.02.2003 14:05:06", "2003年02月01日 14時05分06秒"};
    const rv_test::TestLocales locales(kNames);
    RVString db_text("20030201140506"), other_text("19991231010203");
    RVDateTime object(db_text);
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        SCOPED_TRACE(kNames[i]);
        const rv_test::Environment user("LC_ALL", kNames[i]);
        RVString both, date, time;
        object.Get_Value(both);
        object.Get_Date_Value(date);
        object.Get_Time_Value(time);
        EXPECT_STREQ(both, kTexts[i]);
        EXPECT_STREQ(date + ' ' + time, kTexts[i]);

        RVDateTime read(other_text);
        EXPECT_FALSE(read.Set_Date_Value(time) || read.Set_Time_Value(date));
        EXPECT_TRUE(read.Set_Date_Value(both) && read.Compare_Date(object) == 0);
        EXPECT_NE(read.Compare_Time(object), 0);
        EXPECT_TRUE(read.Set_Time_Value(both) && read == object);
        EXPECT_TRUE(read.Set_Value(time) && read.Get_Year() == 1899 && read.Get_Second() == 6);
        EXPECT_TRUE(read.Set_Value(date) && read.Get_Year() == 2003 && read.Get_Second() == 0);
        EXPECT_TRUE(read.Set_Value(both) && read == object);
    }
}

}  // namespace
