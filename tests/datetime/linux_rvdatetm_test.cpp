// Display texts in the user's locale, which the environment names.
#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "environment.h"
#include "test_locales.h"

namespace {

std::string Db_Of(RVDateTime& object) {
    RVString text;
    object.Get_Db_Value(text);
    return text.GetString();
}

TEST(DateTimeLocale, ShowsAndReadsTheUsersForms) {
    constexpr const char* kNames[] = {"en_US.UTF-8", "en_GB.UTF-8", "de_DE.UTF-8", "ja_JP.UTF-8"};
    constexpr const char* kDates[] = {"02/01/2003", "01/02/03", "01.02.2003", "2003年02月01日"};
    constexpr const char* kTimes[] = {"02:05:06 PM", "14:05:06", "14:05:06", "14時05分06秒"};
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
        EXPECT_STREQ(date, kDates[i]);
        EXPECT_STREQ(time, kTimes[i]);
        EXPECT_STREQ(both, date + ' ' + time);

        RVDateTime read(other_text);
        EXPECT_TRUE(read.Set_Date_Value(both));
        EXPECT_EQ(Db_Of(read), "20030201010203");
        EXPECT_TRUE(read.Set_Time_Value(both));
        EXPECT_EQ(Db_Of(read), "20030201140506");
        EXPECT_TRUE(read.Set_Value(date));
        EXPECT_EQ(Db_Of(read), "20030201000000");
        EXPECT_TRUE(read.Set_Value(both));
        EXPECT_EQ(Db_Of(read), "20030201140506");
        EXPECT_TRUE(read.Set_Value(time));
        EXPECT_EQ(Db_Of(read), "18991230140506");
        EXPECT_FALSE(read.Set_Date_Value(time));
        EXPECT_FALSE(read.Set_Time_Value(date));
    }
}

}  // namespace
