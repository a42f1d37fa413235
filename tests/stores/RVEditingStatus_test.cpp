#include <RVUtils/RVEditingStatus.h>
#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(RVEditingStatus, KeepsTheFirstStatusUnlessItIsOverridden) {
    constexpr struct {
        int before, set, after;
        bool accepted;
    } kRows[] = {{0, 0, 0, true},  {0, 1, 1, true}, {0, INT_MIN, INT_MIN, true},
                 {0, 3, 3, true},  {1, 1, 1, true}, {1, 2, 1, false},
                 {1, 0, 1, false}, {1, 3, 3, true}, {3, 1, 3, false},
                 {3, 0, 3, false}, {3, 3, 3, true}, {-1, INT_MAX, -1, false}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(::testing::Message() << row.before << ", " << row.set);
        RVEditingStatus status;
        status.Set_Status(RV_EDITSTATUS{row.before});
        RVEditingStatus copy(status);
        EXPECT_EQ(copy.Set_Status(RV_EDITSTATUS{row.set}), row.accepted);
        EXPECT_EQ(copy.Get_Status(), row.after);
        EXPECT_EQ(status.Get_Status(), row.before);
        EXPECT_EQ((status = copy).Get_Status(), row.after);
        status.Reset_Status();
        EXPECT_EQ(status.Get_Status(), 0);
    }
}

}  // namespace
