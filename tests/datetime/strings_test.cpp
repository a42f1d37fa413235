// An application whose string resources have a text for a moment that there is not.
#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

#include "report_recorder.h"

namespace {

TEST(DateTimeStrings, TheApplicationsTextStandsForNoMoment) {
    for (const COleDateTime value :
         {COleDateTime{0.0, COleDateTime::invalid}, COleDateTime{1e300, COleDateTime::valid}}) {
        COleDateTime record = value;
        rv_test::ReportRecorder reports;
        RVDateTime object(record);
        RVString text;
        object.Get_Db_Value(text);
        EXPECT_STREQ(text, "No moment of this application") << value.m_dt;
        // As any text of another length.
        EXPECT_FALSE(object.Set_Db_Value(text)) << value.m_dt;
        EXPECT_EQ(reports.Take(), (rv_test::Reports{{13, "rvdatetm"}})) << value.m_dt;
    }
}

}  // namespace
