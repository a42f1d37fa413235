#include <RVUtils/RVEditingStatus.h>
#include <gtest/gtest.h>

namespace {

TEST(RVEditingStatus, KeepsTheFirstStatusUnlessItIsOverridden) {
    constexpr struct {
        int before, set, after;
    } kRows[] = {{0, 0, 0}, {0, -1, -1}, {0, 3, 3}, {1, 1, 1}, {1, 2, 1},
                 {1, 0, 1}, {-1, 3, 3},  {3, 1, 3}, {3, 0, 3}, {3, 3, 3}};
    for (const auto& row : kRows) {
        RVEditingStatus first;
        first.Set_Status(RV_EDITSTATUS{row.before});
        RVEditingStatus status(first);
        EXPECT_EQ(status.Set_Status(RV_EDITSTATUS{row.set}), row.after == row.set) << row.before;
        EXPECT_EQ(status.Get_Status(), row.after) << row.before << ", " << row.set;
        status.Reset_Status();
        EXPECT_EQ(status.Get_Status(), 0);
    }
}

}  // namespace
