// The array of strings against a vector, and behind an exhausted heap.
#include <RVUtils/CException.h>
#include <RVUtils/CStringArray.h>
#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "../allocation_sweep.h"

namespace {

using rv_test::FailingAllocation;
using Texts = std::vector<std::string>;

Texts Texts_Of(const CStringArray& array) {
    Texts texts;
    for (INT_PTR i = 0; i < array.GetSize(); ++i)
        texts.emplace_back(array[i].GetString(), static_cast<std::size_t>(array[i].GetLength()));
    return texts;
}

CString To_CString(const std::string& text) {
    return {text.data(), static_cast<int>(text.size())};
}

TEST(CStringArray, BehavesLikeAVector) {
    std::mt19937 random(2024);
    CStringArray array;
    Texts model;
    for (int step = 0; step < 4000; ++step) {
        std::string text(random() % 40, static_cast<char>(random()));
        const std::size_t index = model.empty() ? 0 : random() % model.size();
        const auto at = static_cast<INT_PTR>(index);
        switch (random() % 12) {
            case 0: {
                const auto size = static_cast<INT_PTR>(random() % 60) - 2;
                array.SetSize(size, static_cast<INT_PTR>(random() % 3) - 1);
                model.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
                break;
            }
            case 1:
                if (random() % 50 == 0) {
                    array.RemoveAll();
                    model.clear();
                }
                break;
            case 2:
                if (model.empty()) break;
                array.Add(array[at]);  // its own element, while it grows
                model.push_back(std::string(model[index]));
                break;
            case 3:
                if (model.empty()) break;
                array[at] = To_CString(text);
                model[index] = text;
                break;
            case 4:
                if (model.empty()) break;
                array.SetAt(at, To_CString(text));
                model[index] = text;
                break;
            default:
                EXPECT_EQ(array.Add(To_CString(text)), static_cast<INT_PTR>(model.size()));
                model.push_back(text);
        }
        ASSERT_EQ(Texts_Of(array), model) << "step " << step;
        ASSERT_EQ(array.GetCount(), array.GetSize());
    }
}

TEST(CStringArray, FailureLeavesTheArrayAsItWas) {
    const struct {
        const char* why;
        void (*change)(CStringArray&);
        INT_PTR size_after;
    } kRows[] = {
        {"add a short text", [](CStringArray& array) { array.Add("x"); }, 4},
        {"add a long text", [](CStringArray& array) { array.Add("longer than fits inside"); }, 4},
        {"add its own element", [](CStringArray& array) { array.Add(array[2]); }, 4},
        {"set a long text", [](CStringArray& array) { array.SetAt(1, "also longer than 15"); }, 3},
        {"grow", [](CStringArray& array) { array.SetSize(1000, -1); }, 1000},
    };
    const Texts before = {"a", "", "this one has its own memory"};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const long failures = rv_test::Sweep_Allocations([&] {
            CStringArray array;
            {
                // The elements are in before the failures begin.
                const AFX_ALLOC_HOOK hook = AfxSetAllocHook(nullptr);
                array.SetSize(3);
                for (std::size_t i = 0; i < before.size(); ++i)
                    array[static_cast<INT_PTR>(i)] = To_CString(before[i]);
                AfxSetAllocHook(hook);
            }
            try {
                row.change(array);
                EXPECT_EQ(array.GetSize(), row.size_after);
            } catch (CMemoryException* exception) {
                exception->Delete();
                EXPECT_EQ(Texts_Of(array), before);
            }
        });
        EXPECT_GE(failures, 1);
    }
}

TEST(CStringArray, RefusesASizeThatNoMemoryHolds) {
    CStringArray array;
    array.Add("kept");
    EXPECT_THROW(array.SetSize(std::numeric_limits<INT_PTR>::max()), CMemoryException*);
    EXPECT_EQ(Texts_Of(array), Texts{"kept"});
}

std::atomic<int> s_Allocations;

TEST(CStringArray, AppendsInFewAllocationsAndGivesThemBack) {
    constexpr int kCount = 10000;
    const struct {
        const char* why;
        void (*append)(CStringArray&);
    } kRows[] = {
        {"Add", [](CStringArray& array) { array.Add("short"); }},
        {"SetSize", [](CStringArray& array) { array.SetSize(array.GetSize() + 1, -1); }},
        {"SetSize, growing by 1",
         [](CStringArray& array) { array.SetSize(array.GetSize() + 1, 1); }},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        CStringArray array;
        s_Allocations = 0;
        const AFX_ALLOC_HOOK before = AfxSetAllocHook([](std::size_t, BOOL, LONG) -> BOOL {
            ++s_Allocations;
            return TRUE;
        });
        for (int i = 0; i < kCount; ++i)
            row.append(array);
        AfxSetAllocHook(before);
        EXPECT_LE(s_Allocations, 40);  // growing by a half each time would take 23
        EXPECT_EQ(array.GetSize(), kCount);

        array.RemoveAll();
        const FailingAllocation none(0);
        EXPECT_THROW(row.append(array), CMemoryException*);
    }
}

}  // namespace
