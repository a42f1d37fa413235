// The list against the standard one, and behind an exhausted heap.
#include <RVUtils/CException.h>
#include <RVUtils/CList.h>
#include <RVUtils/CString.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <list>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "../allocation_sweep.h"
#include "TrackedElement.h"

namespace {

using rv_test::FailingAllocation;
using rv_test::Sweep_Allocations;
using rv_test::Sweep_Copies;
using rv_test::Tracked;
using Ids = std::vector<int>;
using TrackedList = CList<Tracked, const Tracked&>;

Ids Ids_Of(const TrackedList& list) {
    Ids ids;
    for (POSITION position = list.GetHeadPosition(); position;)
        ids.push_back(list.GetNext(position).Id());
    return ids;
}

void Fill(TrackedList& list, int count) {
    for (int id = 0; id < count; ++id)
        list.AddTail(Tracked(id));
}

// Both lists get the same random operations.
void Run_Against_The_Standard_List(INT_PTR block_size, unsigned int seed) {
    std::mt19937 random(seed);
    TrackedList list(block_size);
    std::list<int> model;
    std::vector<std::pair<POSITION, std::list<int>::iterator>> places;
    const auto forget = [&](std::list<int>::iterator which) {
        std::erase_if(places, [&](const auto& place) { return place.second == which; });
    };
    for (int step = 0; step < 600; ++step) {
        const auto choice = random() % 100;
        auto place = places.begin();
        if (!places.empty()) place += static_cast<std::ptrdiff_t>(random() % places.size());
        if (choice < 20) {
            places.emplace_back(list.AddHead(Tracked(step)), model.insert(model.begin(), step));
        } else if (choice < 45) {
            places.emplace_back(list.AddTail(Tracked(step)), model.insert(model.end(), step));
        } else if (choice < 65 && place != places.end()) {
            const auto [position, before] = *place;
            places.emplace_back(list.InsertBefore(position, Tracked(step)),
                                model.insert(before, step));
        } else if (choice < 80 && place != places.end()) {
            const auto [position, which] = *place;
            EXPECT_EQ(list.GetAt(position).Id(), *which);
            list.RemoveAt(position);
            forget(which);
            model.erase(which);
        } else if (choice < 97 && !model.empty()) {
            EXPECT_EQ(list.RemoveHead().Id(), model.front());
            forget(model.begin());
            model.pop_front();
        } else if (choice == 99) {
            list.RemoveAll();
            places.clear();
            model.clear();
        }
        ASSERT_EQ(Ids_Of(list), Ids(model.begin(), model.end())) << "step " << step;
        ASSERT_EQ(list.GetCount(), static_cast<INT_PTR>(model.size()));
        ASSERT_EQ(list.IsEmpty() != FALSE, model.empty());
        ASSERT_EQ(Tracked::Live(), static_cast<int>(model.size()));
    }
}

TEST(CList, BehavesLikeTheStandardList) {
    Tracked::Reset();
    for (const INT_PTR block_size : {-5, 0, 1, 2, 10, 1000}) {
        SCOPED_TRACE(block_size);
        for (unsigned int seed = 0; seed < 4; ++seed)
            Run_Against_The_Standard_List(block_size, seed);
        EXPECT_EQ(Tracked::Live(), 0);
        EXPECT_EQ(Tracked::Faults(), 0);
    }
}

TEST(CList, TakesNodesByTheBlock) {
    const struct {
        INT_PTR block_size;
        int elements;
        long blocks;
    } kRows[] = {{10, 0, 0}, {10, 1, 1}, {10, 10, 1}, {10, 11, 2}, {10, 100, 10},
                 {1, 7, 7},  {0, 7, 7},  {64, 64, 1}, {64, 65, 2}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.elements << " by " << row.block_size);
        EXPECT_EQ(Sweep_Allocations([&] {
                      TrackedList list(row.block_size);
                      try {
                          Fill(list, row.elements);
                      } catch (CMemoryException* exception) {
                          exception->Delete();
                      }
                  }),
                  row.blocks);
    }
}

TEST(CList, KeepsNodesUntilAllAreRemoved) {
    TrackedList list(4);
    Fill(list, 4);
    while (!list.IsEmpty())
        list.RemoveHead();
    const Tracked element;
    Tracked::Fail_Copy(0);  // the node of an element that failed is free again
    EXPECT_THROW(list.AddTail(element), Tracked::CopyFailed);
    {
        const FailingAllocation none(0, FailingAllocation::Mode::kFromThereOn);
        Fill(list, 4);
        EXPECT_EQ(Ids_Of(list), (Ids{0, 1, 2, 3}));
        list.RemoveAll();
        EXPECT_THROW(Fill(list, 1), CMemoryException*);
        EXPECT_TRUE(list.IsEmpty());
        EXPECT_EQ(list.GetHeadPosition(), nullptr);
    }
    Fill(list, 5);
    EXPECT_EQ(Ids_Of(list), (Ids{0, 1, 2, 3, 4}));
}

TEST(CList, FailedAdditionLeavesTheListAsItWas) {
    const struct {
        const char* why;
        void (*add)(TrackedList&, const Tracked&);
        Ids after;
    } kRows[] = {
        {"head",
         [](TrackedList& list, const Tracked& element) { list.AddHead(element); },
         {9, 0, 1, 2, 3}},
        {"tail",
         [](TrackedList& list, const Tracked& element) { list.AddTail(element); },
         {0, 1, 2, 3, 9}},
        {"before the first",
         [](TrackedList& list, const Tracked& element) {
             list.InsertBefore(list.GetHeadPosition(), element);
         },
         {9, 0, 1, 2, 3}},
        {"before the third",
         [](TrackedList& list, const Tracked& element) {
             POSITION position = list.GetHeadPosition();
             list.GetNext(position);
             list.GetNext(position);
             list.InsertBefore(position, element);
         },
         {0, 1, 9, 2, 3}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        Tracked::Reset();
        {
            const Tracked element(9);
            TrackedList list(2);
            Fill(list, 4);  // the block is full
            const auto unchanged = [&] {
                EXPECT_EQ(Ids_Of(list), (Ids{0, 1, 2, 3}));
                EXPECT_EQ(list.GetCount(), 4);
                EXPECT_EQ(Tracked::Live(), 5);
            };
            {
                const FailingAllocation none(0);
                EXPECT_THROW(row.add(list, element), CMemoryException*);
                unchanged();
            }
            EXPECT_EQ(Sweep_Copies([&] { row.add(list, element); }, unchanged), 1);
            EXPECT_EQ(Ids_Of(list), row.after);
        }
        EXPECT_EQ(Tracked::Live(), 0);
        EXPECT_EQ(Tracked::Faults(), 0);
    }
}

TEST(CList, FailedRemoveHeadLeavesTheListAsItWas) {
    Tracked::Reset();
    TrackedList list;
    Fill(list, 3);
    EXPECT_EQ(Sweep_Copies([&] { list.RemoveHead(); },
                           [&] {
                               EXPECT_EQ(Ids_Of(list), (Ids{0, 1, 2}));
                           }),
              1);
    EXPECT_EQ(Ids_Of(list), (Ids{1, 2}));
    EXPECT_EQ(Tracked::Faults(), 0);
}

TEST(CList, FindsTheFirstFromTheHead) {
    CList<ULONG, ULONG> list(3);
    EXPECT_EQ(list.Find(7), nullptr);
    const POSITION zero = list.AddTail(0);
    const POSITION first = list.AddTail(7);
    const POSITION second = list.AddTail(7);
    EXPECT_EQ(list.Find(0), zero);
    EXPECT_EQ(list.Find(7), first);
    EXPECT_EQ(list.Find(8), nullptr);
    list.RemoveAt(first);
    EXPECT_EQ(list.Find(7), second);
    list.RemoveAt(second);
    EXPECT_EQ(list.Find(7), nullptr);
}

// An element of the list itself may be passed in by reference, and elements are changed in place.
TEST(CList, TakesItsOwnElements) {
    const std::string long_text(100, 'x');
    CList<CString, CString&> list(1);
    CString text(long_text.c_str());
    POSITION position = list.AddTail(text);
    for (int round = 0; round < 20; ++round)
        list.AddHead(list.GetAt(position));
    list.GetNext(position) = "changed";
    EXPECT_EQ(position, nullptr);
    EXPECT_EQ(list.GetCount(), 21);
    while (list.GetCount() > 1)
        EXPECT_EQ(list.RemoveHead().GetString(), long_text);
    EXPECT_STREQ(list.RemoveHead(), "changed");
}

TEST(CList, IsMadeFromTheHeapOfTheHouse) {
    const FailingAllocation none(0, FailingAllocation::Mode::kFromThereOn);
    EXPECT_EQ(std::unique_ptr<TrackedList>(new (std::nothrow) TrackedList), nullptr);
    EXPECT_THROW(delete new TrackedList, CMemoryException*);
}

}  // namespace
