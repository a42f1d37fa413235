// An application whose string resources have a text for a moment that there is not.
#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

TEST(DateTimeStrings, TheApplicationsTextStandsForNoMoment) {
    COleDateTime value = {0.0, COleDateTime::invalid};
    RVDateTime object(value);
    RVString text;
    object.Get_Db_Value(text);
    EXPECT_STREQ(text, "No moment of this application");
}
