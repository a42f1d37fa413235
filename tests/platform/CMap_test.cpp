// The map: its hash against the published generator, its walk against a model, its failures.
#include <RVUtils/CMap.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "failing_element.h"

namespace {

using rv_test::Element;
using rv_test::FailingAllocation;
using rv_test::Survives;
using Map = CMap<ULONG, ULONG, Element, const Element&>;

constexpr UINT kModulus = 2147483647;

TEST(CMap, HashesIdsLikeThePublishedGenerator) {
    constexpr struct {
        ULONG id;
        UINT hash;
    } kByHand[] = {{0, 0},
                   {1, 16807},
                   {2, 33614},
                   {1000, 16807000},
                   {0x7fffffff, 0},
                   {0x80000000, 2147466840},
                   {0xffffffff, 2147466840}};
    for (const auto& row : kByHand)
        EXPECT_EQ(HashKey<ULONG>(row.id), row.hash) << row.id;
    std::mt19937 random(5);
    for (int round = 0; round < 20000; ++round) {
        ULONG id = static_cast<ULONG>(random()) % (kModulus - 1) + 1;
        const auto expected = static_cast<UINT>(std::minstd_rand0(id)());
        ASSERT_EQ(HashKey<ULONG&>(id), expected) << id;
        ASSERT_EQ(HashKey<LONG>(-static_cast<LONG>(id)), kModulus - expected) << id;
    }
}

// What a walk must give, for ids from 1 to 2147483646.
struct Model {
    struct Entry {
        ULONG m_Id;
        int m_Value;
    };

    std::vector<Entry> Walk() const {
        const auto bucket = [&](const Entry& entry) {
            return std::minstd_rand0(entry.m_Id)() % m_Buckets;
        };
        std::vector<Entry> entries(m_Entries.rbegin(), m_Entries.rend());
        std::stable_sort(
            entries.begin(), entries.end(),
            [&](const Entry& left, const Entry& right) { return bucket(left) < bucket(right); });
        return entries;
    }
    auto Find(ULONG id) {
        return std::find_if(m_Entries.begin(), m_Entries.end(),
                            [&](const Entry& entry) { return entry.m_Id == id; });
    }

    std::vector<Entry> m_Entries;  // from the oldest to the newest
    UINT m_Buckets = 17;
};

void Expect_Same(const Map& map, const Model& model) {
    ASSERT_EQ(map.GetCount(), static_cast<INT_PTR>(model.m_Entries.size()));
    POSITION position = map.GetStartPosition();
    for (const Model::Entry& expected : model.Walk()) {
        ULONG id = 0;
        Element value;
        ASSERT_NE(position, nullptr);
        map.GetNextAssoc(position, id, value);
        ASSERT_EQ(id, expected.m_Id);
        ASSERT_EQ(value, expected.m_Value);
    }
    ASSERT_EQ(position, nullptr);
}

TEST(CMap, BehavesLikeTheModelThroughEveryFailure) {
    std::mt19937 random(7);
    int failures = 0;
    for (const INT_PTR block_size : {-1, 1, 10}) {
        Map map(block_size);
        Model model;
        for (int step = 0; step < 6000; ++step) {
            const ULONG id = static_cast<ULONG>(random()) % 150 * 10007 + 1;
            const Element value(step);
            Model after = model;
            const auto entry = after.Find(id);
            const bool known = entry != after.m_Entries.end();
            const auto kind = random() % 300;
            const bool done = Survives(random, [&] {
                if (kind < 60) {
                    map.SetAt(id, value);
                    known ? void(entry->m_Value = value) : after.m_Entries.push_back({id, value});
                } else if (kind < 120) {
                    EXPECT_EQ(map[id], known ? entry->m_Value : 0);
                    if (!known) after.m_Entries.push_back({id, 0});
                } else if (kind < 200) {
                    EXPECT_EQ(map.RemoveKey(id), known ? TRUE : FALSE);
                    if (known) after.m_Entries.erase(entry);
                } else if (kind < 295) {
                    Element found(-1);
                    EXPECT_EQ(map.Lookup(id, found), known ? TRUE : FALSE);
                    EXPECT_EQ(found, known ? entry->m_Value : -1);
                } else if (kind < 296) {
                    map.RemoveAll();
                    after.m_Entries.clear();
                } else {
                    // A number of 0, and a map with entries, leave the buckets as they are.
                    const UINT buckets = static_cast<UINT>(random() % 40);
                    map.InitHashTable(buckets, random() % 2 == 0);
                    if (buckets && after.m_Entries.empty()) after.m_Buckets = buckets;
                }
            });
            if (done) model = after;
            failures += !done;
            ASSERT_EQ(Element::s_Live, 1 + static_cast<int>(model.m_Entries.size()));
            if (step % 10 == 0 || !done) Expect_Same(map, model);
        }
    }
    EXPECT_EQ(Element::s_Live, 0);
    EXPECT_GT(failures, 1000);
}

TEST(CMap, TakesMemoryWhenItSays) {
    const struct {
        const char* why;
        UINT buckets;
        BOOL now;
        ULONG entries;
        int allocations;
    } kRows[] = {{"nothing yet", 0, TRUE, 0, 0},      {"table and block", 0, TRUE, 1, 2},
                 {"one block", 0, TRUE, 10, 2},       {"a second block", 0, TRUE, 11, 3},
                 {"sized now", 50, TRUE, 0, 1},       {"sized later", 50, FALSE, 0, 0},
                 {"sized and filled", 50, TRUE, 1, 2}};
    for (const auto& row : kRows) {
        Map map;
        map.InitHashTable(3, TRUE);
        map.InitHashTable(17, TRUE);  // in place of the table before
        const auto fill = [&] {
            map.RemoveAll();  // gives all of it back
            map.InitHashTable(row.buckets, row.now);
            for (ULONG id = 0; id < row.entries; ++id)
                map[id];
        };
        EXPECT_EQ(rv_test::Sweep_Exceptions(fill), row.allocations) << row.why;
    }
}

// A key type as an application has it: the number is no part of the key.
struct Name {
    std::string m_Text;
    int m_Number;
};

int s_Comparisons = 0;

}  // namespace

template <>
UINT HashKey<Name&>(Name& name) {
    return static_cast<UINT>(name.m_Text.size());
}

template <>
BOOL CompareElements<Name, Name>(const Name* left, const Name* right) {
    ++s_Comparisons;
    return left->m_Text == right->m_Text;
}

namespace {

TEST(CMap, TakesAKeyTypeOfTheApplication) {
    CMap<Name, Name&, int, int> map;
    Name ab{"ab", 1}, other_ab{"ab", 2}, cd{"cd", 3}, key;
    Name neighbour{std::string(2 + 17, 'x'), 4};  // in the same bucket, with another hash
    map[ab] = 10;
    map[other_ab] = 20;
    map[cd] = 30;
    map[neighbour] = 40;
    EXPECT_EQ(map.GetCount(), 3);
    int value = 0;
    s_Comparisons = 0;
    EXPECT_TRUE(map.Lookup(ab, value));
    EXPECT_EQ(value, 20);
    EXPECT_EQ(s_Comparisons, 2);  // not the neighbour: hashes are compared before keys
    EXPECT_TRUE(map.RemoveKey(cd) && map.RemoveKey(neighbour));
    POSITION position = map.GetStartPosition();
    map.GetNextAssoc(position, key, value);
    EXPECT_EQ(key.m_Number, 1);  // the first key stays, whichever equal one finds it
}

}  // namespace
