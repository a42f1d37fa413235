// The map: its hash against the published generator, its walk against a model, its failures.
#include <RVUtils/CException.h>
#include <RVUtils/CMap.h>
#include <RVUtils/CString.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "../allocation_sweep.h"
#include "TrackedElement.h"

namespace {

// A key type as an application has it: the number after the dot is no part of the key.
struct Name {
    std::string m_Text;
    int m_Number = 0;
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

using rv_test::FailingAllocation;
using rv_test::Sweep_Allocations;
using rv_test::Sweep_Copies;
using rv_test::Tracked;

constexpr UINT kUsualBuckets = 17;
constexpr UINT kModulus = 2147483647;
using IdMap = CMap<ULONG, ULONG, int, int>;
using Entries = std::vector<std::pair<ULONG, int>>;

Entries Entries_Of(const IdMap& map) {
    Entries entries;
    for (POSITION position = map.GetStartPosition(); position;) {
        auto& [id, value] = entries.emplace_back();
        map.GetNextAssoc(position, id, value);
    }
    return entries;
}

// The order that a walk must have, for ids from 1 to 2147483646 given from the oldest to the
// newest.
Entries In_Walk_Order(Entries entries, UINT buckets) {
    const auto bucket = [&](const auto& entry) {
        return std::minstd_rand0(entry.first)() % buckets;
    };
    std::reverse(entries.begin(), entries.end());
    std::stable_sort(entries.begin(), entries.end(), [&](const auto& left, const auto& right) {
        return bucket(left) < bucket(right);
    });
    return entries;
}

TEST(CMap, HashesIdsLikeThePublishedGenerator) {
    // By hand, and for 4294967295 = -1: -16807 + 2147483647.
    const struct {
        ULONG id;
        UINT hash;
    } kRows[] = {{0, 0},
                 {1, 16807},
                 {2, 33614},
                 {1000, 16807000},
                 {127772, 2147464004},
                 {127773, 2147480811},
                 {0x7fffffff, 0},
                 {0x80000000, 2147466840},
                 {0xffffffff, 2147466840}};
    for (const auto& row : kRows)
        EXPECT_EQ(HashKey<ULONG>(row.id), row.hash) << row.id;

    // Park and Miller: ten thousand steps from 1 end at 1043618065.
    UINT number = 1;
    for (int step = 0; step < 10000; ++step)
        number = HashKey<ULONG>(number);
    EXPECT_EQ(number, 1043618065u);

    std::mt19937 random(5);
    for (int round = 0; round < 20000; ++round) {
        ULONG id = static_cast<ULONG>(random()) % (kModulus - 1) + 1;
        const auto expected = static_cast<UINT>(std::minstd_rand0(id)());
        ASSERT_EQ(HashKey<ULONG&>(id), expected) << id;
        ASSERT_EQ(HashKey<LONG>(-static_cast<LONG>(id)), kModulus - expected) << id;
    }
}

TEST(CMap, WalksByBucketAndFromTheNewestEntry) {
    IdMap map;
    for (const ULONG id : {1u, 2u, 1000u})  // buckets 11, 5 and 1
        map.SetAt(id, 0);
    EXPECT_EQ(Entries_Of(map), (Entries{{1000, 0}, {2, 0}, {1, 0}}));

    std::mt19937 random(6);
    for (const UINT buckets : {0u, 1u, 2u, kUsualBuckets, 1024u, 100003u}) {
        SCOPED_TRACE(buckets);
        IdMap sized(7);
        sized.InitHashTable(buckets, random() % 2 == 0);
        Entries added;
        for (int i = 0; i < 1500; ++i)
            added.emplace_back(static_cast<ULONG>(random()) % (kModulus - 1) + 1, i);
        for (const auto& [id, value] : added)
            sized.SetAt(id, value);
        for (auto& [id, value] : added)  // an entry that is there keeps its place
            sized[id] = value = -value;
        EXPECT_EQ(Entries_Of(sized), In_Walk_Order(added, buckets ? buckets : kUsualBuckets));
    }
}

TEST(CMap, BehavesLikeTheStandardMap) {
    std::mt19937 random(7);
    for (const INT_PTR block_size : {-1, 1, 10}) {
        IdMap map(block_size);
        std::map<ULONG, int> model;
        for (int step = 0; step < 5000; ++step) {
            const ULONG id = static_cast<ULONG>(random()) % 200 - 100;
            const int value = static_cast<int>(random() % 1000);
            switch (random() % 6) {
                case 0:
                    EXPECT_EQ(map[id], model[id]);  // a new one is 0
                    map[id] = model[id] = value;
                    break;
                case 1:
                    map.SetAt(id, value);
                    model[id] = value;
                    break;
                case 2:
                case 3:
                    EXPECT_EQ(map.RemoveKey(id), static_cast<BOOL>(model.erase(id)));
                    break;
                case 4: {
                    int found = -1;
                    const auto place = model.find(id);
                    EXPECT_EQ(map.Lookup(id, found), static_cast<BOOL>(place != model.end()));
                    EXPECT_EQ(found, place != model.end() ? place->second : -1);
                    break;
                }
                default:
                    if (random() % 200 != 0) break;
                    map.RemoveAll();
                    model.clear();
            }
            ASSERT_EQ(map.GetCount(), static_cast<INT_PTR>(model.size()));
            if (step % 50 != 0) continue;
            Entries walked = Entries_Of(map);
            std::sort(walked.begin(), walked.end());
            ASSERT_EQ(walked, Entries(model.begin(), model.end()));
        }
    }
}

// How many allocations the steps of a map's life take, by way of how often they can fail.
TEST(CMap, TakesMemoryWhenItSays) {
    const struct {
        const char* why;
        void (*use)(IdMap&);
        long allocations;
    } kRows[] = {
        {"made", [](IdMap&) {}, 0},
        {"looked into",
         [](IdMap& map) {
             int value;
             map.Lookup(1, value);
             map.RemoveKey(1);
             map.RemoveAll();
         },
         0},
        {"first entry: table and block", [](IdMap& map) { map[1]; }, 2},
        {"tenth entry",
         [](IdMap& map) {
             for (ULONG id = 0; id < 10; ++id)
                 map[id];
         },
         2},
        {"eleventh entry",
         [](IdMap& map) {
             for (ULONG id = 0; id < 11; ++id)
                 map[id];
         },
         3},
        {"sized now", [](IdMap& map) { map.InitHashTable(50, TRUE); }, 1},
        {"sized now, and an entry",
         [](IdMap& map) {
             map.InitHashTable(50, TRUE);
             map[1];
         },
         2},
        {"sized later", [](IdMap& map) { map.InitHashTable(50, FALSE); }, 0},
        {"sized to 0", [](IdMap& map) { map.InitHashTable(0, TRUE); }, 0},
        {"an entry again after all were removed",
         [](IdMap& map) {
             map[1];
             map.RemoveAll();
             map[1];
         },
         4},
        {"an entry in place of a removed one",
         [](IdMap& map) {
             map[1];
             map.RemoveKey(1);
             map[2];
         },
         2},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(Sweep_Allocations([&] {
                      IdMap map;
                      try {
                          row.use(map);
                      } catch (CMemoryException* exception) {
                          exception->Delete();
                      }
                  }),
                  row.allocations);
    }
}

TEST(CMap, KeepsItsBucketsWhereItSays) {
    // Ids 1 to 400 tell every number of buckets apart by their walk.
    Entries added;
    for (ULONG id = 1; id <= 400; ++id)
        added.emplace_back(id, 0);
    const auto fill = [&](IdMap& map) {
        for (const auto& [id, value] : added)
            map.SetAt(id, value);
    };
    const struct {
        const char* why;
        void (*prepare)(IdMap&);
        UINT buckets;
    } kRows[] = {
        {"from the start", [](IdMap&) {}, 17},
        {"0 is no number", [](IdMap& map) { map.InitHashTable(0, TRUE); }, 17},
        {"0 after another",
         [](IdMap& map) {
             map.InitHashTable(5, TRUE);
             map.InitHashTable(0, TRUE);
         },
         5},
        {"the last number counts",
         [](IdMap& map) {
             map.InitHashTable(5, TRUE);
             map.InitHashTable(31, FALSE);
         },
         31},
        {"an occupied map",
         [](IdMap& map) {
             map.InitHashTable(5, TRUE);
             map[1];
             map.InitHashTable(31, TRUE);
         },
         5},
        {"a map emptied",
         [](IdMap& map) {
             map.InitHashTable(5, TRUE);
             map[1];
             map.RemoveAll();
         },
         5},
        {"no memory for the table",
         [](IdMap& map) {
             map.InitHashTable(5, TRUE);
             const FailingAllocation none(0);
             EXPECT_THROW(map.InitHashTable(31, TRUE), CMemoryException*);
         },
         5},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        IdMap map;
        row.prepare(map);
        fill(map);
        EXPECT_EQ(Entries_Of(map), In_Walk_Order(added, row.buckets));
    }
}

using TrackedMap = CMap<ULONG, ULONG, Tracked, const Tracked&>;

TEST(CMap, FailureLeavesTheMapAsItWas) {
    const struct {
        const char* why;
        void (*change)(TrackedMap&, const Tracked&);
        bool needs_memory;
        bool copies;
        INT_PTR count_after;
    } kRows[] = {
        {"new entry", [](TrackedMap& map, const Tracked& value) { map.SetAt(3, value); }, true,
         true, 3},
        {"new empty entry", [](TrackedMap& map, const Tracked&) { map[3]; }, true, true, 3},
        {"new value", [](TrackedMap& map, const Tracked& value) { map.SetAt(2, value); }, false,
         true, 2},
        {"removal", [](TrackedMap& map, const Tracked&) { map.RemoveKey(2); }, false, false, 1},
        {"lookup",
         [](TrackedMap& map, const Tracked&) {
             Tracked found(-1);
             map.Lookup(2, found);
         },
         false, true, 2},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        Tracked::Reset();
        {
            const Tracked value(9);
            TrackedMap map(1);
            map.SetAt(1, Tracked(100));
            map.SetAt(2, Tracked(200));
            const auto unchanged = [&] {
                EXPECT_EQ(map.GetCount(), 2);
                Tracked found(-1);
                EXPECT_TRUE(map.Lookup(1, found) && found.Id() == 100);
                EXPECT_TRUE(map.Lookup(2, found) && found.Id() == 200);
                EXPECT_FALSE(map.Lookup(3, found));
                EXPECT_EQ(Tracked::Live(), 4);  // with `value` and `found`
            };
            if (row.needs_memory) {
                const FailingAllocation none(0);
                EXPECT_THROW(row.change(map, value), CMemoryException*);
                unchanged();
            }
            EXPECT_EQ(Sweep_Copies([&] { row.change(map, value); }, unchanged) > 0, row.copies);
            EXPECT_EQ(map.GetCount(), row.count_after);
            EXPECT_EQ(Tracked::Live(), 1 + row.count_after);
        }
        EXPECT_EQ(Tracked::Live(), 0);
        EXPECT_EQ(Tracked::Faults(), 0);
    }
}

TEST(CMap, TakesAKeyTypeOfTheApplication) {
    CMap<Name, Name&, CString, const CString&> map;
    Name ab = {"ab", 1}, other_ab = {"ab", 2}, cd = {"cd", 3};
    Name neighbour{std::string(2 + kUsualBuckets, 'x'),
                   4};  // the bucket of "ab", with another hash
    map[ab] = "first";
    map[other_ab] = "second";
    map.SetAt(cd, "third");
    map.SetAt(neighbour, "fourth");
    EXPECT_EQ(map.GetCount(), 3);

    CString text;
    s_Comparisons = 0;
    ASSERT_TRUE(map.Lookup(ab, text));
    EXPECT_STREQ(text, "second");
    // Hashes are compared before keys: of the two in front, only "cd" has the same one.
    EXPECT_EQ(s_Comparisons, 2);
    ASSERT_TRUE(map.Lookup(cd, text));
    EXPECT_STREQ(text, "third");
    ASSERT_TRUE(map.Lookup(neighbour, text));
    EXPECT_STREQ(text, "fourth");

    // The key of the first entry stays, whichever equal key finds it.
    EXPECT_TRUE(map.RemoveKey(cd));
    EXPECT_TRUE(map.RemoveKey(neighbour));
    Name key;
    POSITION position = map.GetStartPosition();
    map.GetNextAssoc(position, key, text);
    EXPECT_EQ(key.m_Number, 1);
    EXPECT_EQ(position, nullptr);
}

}  // namespace
