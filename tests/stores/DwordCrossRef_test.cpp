// Links against a model, also where memory fails.
#include <RVUtils/DwordCrossRef.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

#include "allocation_sweep.h"
#include "report_recorder.h"

namespace {

using rv_test::FailingAllocation;
using rv_test::ReportRecorder;
using rv_test::Reports;
using Ids = std::vector<ULONG>;

const Reports kNoMemory = {{23, "DwordCrossRef"}};

Ids Links(RVDwordCrossRef& links, ULONG key) {
    CList<ULONG, ULONG> list;
    list.AddTail(4711);  // goes, whatever follows
    const bool found = links.Get_Ref_List(key, list);
    EXPECT_EQ(found, !list.IsEmpty());
    Ids ids;
    for (POSITION position = list.GetHeadPosition(); position;)
        ids.push_back(list.GetNext(position));
    return ids;
}

enum class Outcome { kDone, kReported, kThrown };

// Runs `operation` with the given allocation failing.
template <class Operation>
Outcome Try(ReportRecorder& reports, int failing_allocation, Operation operation) {
    try {
        const FailingAllocation failing(failing_allocation);
        operation();
    } catch (CMemoryException* exception) {
        exception->Delete();
        return Outcome::kThrown;
    }
    const Reports taken = reports.Take();
    EXPECT_TRUE(taken.empty() || taken == kNoMemory);
    return taken.empty() ? Outcome::kDone : Outcome::kReported;
}

TEST(RVDwordCrossRef, BehavesLikeTheModelThroughEveryFailure) {
    const struct {
        ULONG keys, ids;
        unsigned removals, of_the_first;  // in a hundred operations, in a hundred removals
    } kRows[] = {{400, 5, 45, 20}, {2, 300, 40, 0}, {2, 2000, 48, 100}, {20, 3, 60, 50}};
    for (const auto& row : kRows) {
        std::mt19937 random(1);
        ReportRecorder reports;
        RVDwordCrossRef links;
        std::map<ULONG, Ids> model;
        for (int step = 0; step < 6000; ++step) {
            const ULONG key = static_cast<ULONG>(random() % row.keys) * 0x10001;
            Ids& ids = model[key];
            ULONG id = static_cast<ULONG>(random() % row.ids);
            const bool removes = random() % 100 < row.removals;
            if (removes && random() % 100 < row.of_the_first && !ids.empty()) id = ids.front();
            const Outcome outcome = Try(reports, static_cast<int>(random() % 8) - 5, [&] {
                removes ? links.Remove_Link(key, id) : links.Add_Link(key, id);
            });
            ASSERT_FALSE(outcome == Outcome::kReported && (removes || !ids.empty()));
            const auto found = std::find(ids.begin(), ids.end(), id);
            if (outcome == Outcome::kDone && !removes) ids.push_back(id);
            if (outcome == Outcome::kDone && removes && found != ids.end()) ids.erase(found);
            ASSERT_EQ(Links(links, key), ids);
            if (step % 2000 == 1999) {
                for (const auto& [known, expected] : model)
                    ASSERT_EQ(Links(links, known), expected);
                links.Remove_All_Links();
                model.clear();
            }
        }
    }
}

TEST(RVDwordCrossRef, ReportsOrThrowsByWhatLacksMemory) {
    ReportRecorder reports;
    Outcome outcome = Outcome::kReported;  // for the links of a new key, which come first
    for (int failing = 0; outcome != Outcome::kDone; ++failing) {
        RVDwordCrossRef links;
        outcome = Try(reports, failing, [&] { links.Add_Link(0, 0); });
        EXPECT_EQ(outcome == Outcome::kReported, failing == 0);
        EXPECT_EQ(Links(links, 0), outcome == Outcome::kDone ? Ids{0} : Ids());
        CList<ULONG, ULONG> list;
        list.AddTail(1);
        links.Add_Link(7, 7);
        EXPECT_EQ(Try(reports, 0, [&] { links.Get_Ref_List(7, list); }), Outcome::kThrown);
        EXPECT_TRUE(list.IsEmpty());
    }
}

}  // namespace
