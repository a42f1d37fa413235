// The list against the standard one, also where memory and copies fail.
#include <RVUtils/CList.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <new>
#include <vector>

#include "failing_element.h"

namespace {

using rv_test::Element;
using rv_test::FailingAllocation;
using rv_test::Survives;
using List = CList<Element, const Element&>;

void Expect_Same(const List& list, const std::list<int>& model) {
    std::vector<int> ids;
    for (POSITION position = list.GetHeadPosition(); position;)
        ids.push_back(list.GetNext(position));
    ASSERT_TRUE(std::equal(ids.begin(), ids.end(), model.begin(), model.end()));
    ASSERT_EQ(list.GetCount(), static_cast<INT_PTR>(model.size()));
    ASSERT_EQ(list.IsEmpty() != FALSE, model.empty());
}

TEST(CList, BehavesLikeTheStandardListThroughEveryFailure) {
    std::mt19937 random(1);
    int failures = 0;
    for (const INT_PTR block_size : {-5, 0, 1, 2, 10, 1000}) {
        List list(block_size);
        std::list<int> model;
        for (int step = 0; step < 1500; ++step) {
            const Element element(static_cast<int>(random() % 40));
            const int wanted = static_cast<int>(random() % 40);
            const auto found = std::find(model.begin(), model.end(), wanted);
            const POSITION position = list.Find(Element(wanted));
            ASSERT_EQ(position != nullptr, found != model.end());
            const auto kind = random() % 100;
            std::list<int> after = model;
            const auto place = std::next(after.begin(), std::distance(model.begin(), found));
            const bool done = Survives(random, [&] {
                if (kind < 25) {
                    list.AddHead(element);
                    after.push_front(element);
                } else if (kind < 50) {
                    EXPECT_EQ(list.GetAt(list.AddTail(element)), element);
                    after.push_back(element);
                } else if (kind < 65 && position) {
                    list.InsertBefore(position, list.GetAt(position));  // its own element
                    after.insert(place, wanted);
                } else if (kind < 80 && position) {
                    list.RemoveAt(position);
                    after.erase(place);
                } else if (kind < 97 && !after.empty()) {
                    EXPECT_EQ(list.RemoveHead(), after.front());
                    after.pop_front();
                } else if (kind == 97) {
                    list.Expect(static_cast<INT_PTR>(random() % 50) - 10);
                } else if (kind == 99) {
                    list.RemoveAll();
                    after.clear();
                }
            });
            if (done) model = after;
            failures += !done;
            Expect_Same(list, model);
            ASSERT_EQ(Element::s_Live, 1 + static_cast<int>(model.size()));
        }
    }
    EXPECT_EQ(Element::s_Live, 0);
    EXPECT_GT(failures, 500);
}

TEST(CList, TakesNodesByTheBlockAndKeepsThemUntilAllAreRemoved) {
    const struct {
        INT_PTR block_size;
        int expected, elements;
        int blocks;
    } kRows[] = {{10, 0, 0, 0},   {10, 0, 1, 1},   {10, 0, 10, 1}, {10, 0, 11, 2},
                 {1, 0, 7, 7},    {0, 0, 7, 7},    {64, 0, 65, 2}, {10, 3, 10, 1},
                 {10, 25, 25, 1}, {10, 25, 26, 2}, {10, -1, 11, 2}};
    for (const auto& row : kRows) {
        List list(row.block_size);
        const auto fill = [&] {
            for (int i = 0; i < row.elements; ++i)
                list.AddTail(Element(i));
        };
        const auto refill = [&] {
            list.RemoveAll();
            list.Expect(row.expected);
            fill();
        };
        EXPECT_EQ(rv_test::Sweep_Exceptions(refill), row.blocks);
        const FailingAllocation none(0, FailingAllocation::Mode::kFromThereOn);
        while (!list.IsEmpty())
            list.RemoveHead();
        if (row.elements) {
            Element::s_CopiesLeft = 0;  // the node of an element that failed is free again
            EXPECT_THROW(fill(), Element::CopyFailed);
        }
        fill();
        EXPECT_EQ(list.GetCount(), row.elements);
    }
}

TEST(CList, IsMadeFromTheMemoryOfTheHouse) {
    const FailingAllocation none(0, FailingAllocation::Mode::kFromThereOn);
    EXPECT_EQ(new (std::nothrow) List, nullptr);
}

}  // namespace
