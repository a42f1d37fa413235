// The array of strings against a vector, also where memory fails.
#include <RVUtils/CStringArray.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "failing_element.h"

namespace {

using rv_test::FailingAllocation;

TEST(CStringArray, BehavesLikeAVectorThroughEveryFailure) {
    std::mt19937 random(2024);
    CStringArray array;
    std::vector<std::string> model;
    int failures = 0;
    for (int step = 0; step < 4000; ++step) {
        std::vector<std::string> after = model;
        const std::string text(random() % 40, static_cast<char>(random() | 1));
        const std::size_t index = model.empty() ? 0 : random() % model.size();
        const auto at = static_cast<INT_PTR>(index);
        const auto kind = model.empty() ? 5 : random() % 8;
        const bool done = rv_test::Survives(random, [&] {
            if (kind == 0) {
                const int size = static_cast<int>(random() % 60) - 2;
                array.SetSize(size, static_cast<INT_PTR>(random() % 3) - 1);
                after.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
            } else if (kind == 1) {
                array.Add(array[at]);  // its own element, while it grows
                after.push_back(model[index]);
            } else if (kind == 2) {
                array[at] = text.c_str();
                after[index] = text;
            } else if (kind == 3) {
                array.SetAt(at, text.c_str());
                after[index] = text;
            } else {
                EXPECT_EQ(array.Add(text.c_str()), static_cast<INT_PTR>(model.size()));
                after.push_back(text);
            }
        });
        if (done) model = after;
        failures += !done;
        ASSERT_EQ(array.GetSize(), static_cast<INT_PTR>(model.size()));
        ASSERT_EQ(array.GetCount(), array.GetSize());
        for (std::size_t i = 0; i < model.size(); ++i)
            ASSERT_EQ(array.GetAt(static_cast<INT_PTR>(i)).GetString(), model[i]);
    }
    EXPECT_GT(failures, 200);
    EXPECT_THROW(array.SetSize(std::numeric_limits<INT_PTR>::max()), CMemoryException*);
    EXPECT_EQ(array.GetSize(), static_cast<INT_PTR>(model.size()));
    array.RemoveAll();
    EXPECT_EQ(array.GetSize(), 0);
    const FailingAllocation none(0);
    EXPECT_THROW(array.Add("x"), CMemoryException*);  // the memory went with the elements
}

// Every allocation of the row fails once; there are few of them.
TEST(CStringArray, AppendsInFewAllocations) {
    CStringArray array;
    const auto fill = [&array] {
        array.RemoveAll();
        while (array.GetSize() < 5000)
            array.SetSize(array.GetSize() + 1, 1);
        while (array.Add("short") < 10000) {
        }
    };
    EXPECT_LE(rv_test::Sweep_Exceptions(fill), 40);
}

}  // namespace
