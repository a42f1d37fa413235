// Nodes by themselves, and as the keys of an application's own map.
#include <RVUtils/RVGUIDNode.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "allocation_sweep.h"

namespace {

constexpr GUID kZero = {};
constexpr GUID kName = {0xF81D4FAE, 0x7DEC, 0x11D0, {0xA7, 0x65, 0, 0xA0, 0xC9, 0x1E, 0x6B, 0xF6}};

TEST(RVGUIDNode, HashesTheTextAndComparesTheGuid) {
    int first, second;
    RVGUIDNode unset;
    EXPECT_EQ(HashKey<RVGUIDNode&>(unset), 0u);
    EXPECT_TRUE(IsEqualGUID(unset.Get_GUID(), kZero));
    EXPECT_EQ(unset.Get_Ptr(), nullptr);
    RVGUIDNode left(kName, &first);
    const struct {
        const char* why;
        RVGUIDNode node;
        UINT hash;  // reckoned apart from here
        int same_key, equal;
    } kRows[] = {{"a copy", left, 309482450, 1, 1},
                 {"another pointer", {kName, &second}, 309482450, 1, 0},
                 {"another GUID", {kZero, &first}, 482102732, 0, 0},
                 {"both", {kZero, &second}, 482102732, 0, 0}};
    for (auto row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(HashKey<RVGUIDNode&>(row.node), row.hash);
        EXPECT_EQ((CompareElements<RVGUIDNode, RVGUIDNode>(&left, &row.node)), row.same_key);
        EXPECT_EQ(left == row.node, row.equal);
        row.node.Set_GUID(kName);  // the pointer stays
        EXPECT_EQ(HashKey<RVGUIDNode&>(row.node), 309482450u);
        row.node.Set_Ptr(&first);
        EXPECT_EQ(left == row.node, 1);
    }
}

TEST(RVGUIDNode, StaysAsItWasWithoutMemory) {
    int target;
    const RVGUIDNode source(kName, &target);
    for (const bool copies : {false, true}) {
        const int failures = rv_test::Sweep_Allocations([&] {
            RVGUIDNode node;
            try {
                copies ? void(node = source) : node.Set_GUID(kName);
                EXPECT_EQ(HashKey<RVGUIDNode&>(node), 309482450u);
                EXPECT_TRUE(IsEqualGUID(node.Get_GUID(), kName));
            } catch (CMemoryException* exception) {
                exception->Delete();
                EXPECT_EQ(HashKey<RVGUIDNode&>(node), 0u);
                EXPECT_EQ(node == RVGUIDNode(), 1);
            }
        });
        EXPECT_EQ(failures, 1);
    }
}

TEST(RVGUIDNode, KeysAMapOfTheApplication) {
    CMap<RVGUIDNode, RVGUIDNode&, int, int> map;
    std::map<USHORT, int> model;
    std::mt19937 random(1);
    for (int step = 0; step < 5000; ++step) {
        GUID guid = kName;
        guid.Data2 = static_cast<USHORT>(random() % 500);
        RVGUIDNode key(guid, &step + step % 2);  // which pointer plays no part
        int value = -1;
        const auto found = model.find(guid.Data2);
        ASSERT_EQ(map.Lookup(key, value) != FALSE, found != model.end());
        ASSERT_EQ(value, found != model.end() ? found->second : -1);
        if (random() % 3 == 0) {
            map.RemoveKey(key);
            model.erase(guid.Data2);
        } else {
            map.SetAt(key, step);
            model[guid.Data2] = step;
        }
        ASSERT_EQ(map.GetCount(), static_cast<INT_PTR>(model.size()));
    }
}

}  // namespace
