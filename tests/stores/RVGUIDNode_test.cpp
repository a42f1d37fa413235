// Nodes by themselves, without memory, and as the keys of an application's own map.
#include <RVUtils/RVGUIDNode.h>
#include <gtest/gtest.h>

#include "allocation_sweep.h"

namespace {

constexpr GUID kName = {0xF81D4FAE, 0x7DEC, 0x11D0, {0xA7, 0x65, 0, 0xA0, 0xC9, 0x1E, 0x6B, 0xF6}};
constexpr UINT kNameHash = 309482450, kZeroHash = 482102732;  // reckoned apart from here

TEST(RVGUIDNode, IsAKeyByItsGuidWhateverItsPointer) {
    int first, second;
    RVGUIDNode unset, node(kName, &first), other(kName, &second), zero({}, &first);
    const struct {
        RVGUIDNode& node;
        UINT hash;
        int same_key, equal, found;
    } kRows[] = {{node, kNameHash, 1, 1, 2},
                 {other, kNameHash, 1, 0, 2},
                 {zero, kZeroHash, 0, 0, 3},
                 {unset, 0, 0, 0, -1}};
    CMap<RVGUIDNode, RVGUIDNode&, int, int> map;
    map[node] = 1;
    map[other] = 2;
    map[zero] = 3;
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.hash);
        EXPECT_EQ(HashKey<RVGUIDNode&>(row.node), row.hash);
        EXPECT_EQ((CompareElements<RVGUIDNode, RVGUIDNode>(&node, &row.node)), row.same_key);
        EXPECT_EQ(node == row.node, row.equal);
        int value = -1;
        EXPECT_EQ(map.Lookup(row.node, value), row.found > 0);
        EXPECT_EQ(value, row.found);
        EXPECT_EQ(RVGUIDNode(row.node) == row.node, 1);
    }
}

TEST(RVGUIDNode, StaysAsItWasWithoutMemory) {
    const RVGUIDNode source(kName, nullptr);
    for (const bool copies : {false, true}) {
        RVGUIDNode node;
        const auto set = [&] { copies ? void(node = source) : node.Set_GUID(kName); };
        const auto check = [&] {
            EXPECT_EQ(HashKey<RVGUIDNode&>(node), 0u);
            EXPECT_EQ(node == source, 0);
        };
        EXPECT_EQ(rv_test::Sweep_Exceptions(set, check), 1);
        EXPECT_EQ(HashKey<RVGUIDNode&>(node), kNameHash);
        EXPECT_EQ(node == source, 1);
    }
}

}  // namespace
