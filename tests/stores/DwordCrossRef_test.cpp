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
        const char* why;
        ULONG keys, ids;
        unsigned removals, first_of_them;  // in a hundred operations, in a hundred removals
    } kRows[] = {{"many keys", 400, 5, 45, 20},
                 {"long lists", 2, 300, 40, 0},
                 {"in the order of their coming", 2, 2000, 48, 100},
                 {"mostly gone", 20, 3, 60, 50}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        std::mt19937 random(1);
        ReportRecorder reports;
        RVDwordCrossRef links;
        std::map<ULONG, Ids> model;
        int outcomes[3] = {};
        for (int step = 0; step < 6000; ++step) {
            const ULONG key = static_cast<ULONG>(random() % row.keys) * 0x10001;
            ULONG id = static_cast<ULONG>(random() % row.ids);
            const bool removes = random() % 100 < row.removals;
            const bool first = random() % 100 < row.first_of_them;
            if (removes && first && model.contains(key)) id = model[key].front();
            const Outcome outcome = Try(reports, static_cast<int>(random() % 8) - 5, [&] {
                removes ? links.Remove_Link(key, id) : links.Add_Link(key, id);
            });
            ++outcomes[static_cast<int>(outcome)];
            ASSERT_FALSE(outcome == Outcome::kReported && (removes || model.contains(key)));
            if (outcome == Outcome::kDone && !removes) model[key].push_back(id);
            if (outcome == Outcome::kDone && removes && model.contains(key)) {
                Ids& ids = model[key];
                const auto found = std::find(ids.begin(), ids.end(), id);
                if (found != ids.end()) ids.erase(found);
                if (ids.empty()) model.erase(key);
            }
            const auto expected = model.find(key);
            ASSERT_EQ(Links(links, key), expected == model.end() ? Ids() : expected->second);
            if (step % 2000 == 1999) {
                for (const auto& [known, ids] : model)
                    ASSERT_EQ(Links(links, known), ids);
                links.Remove_All_Links();
                model.clear();
            }
        }
        EXPECT_GT(outcomes[0], 4000);
        EXPECT_GT(outcomes[1] + outcomes[2], 10);
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
        links.Add_Link(0, 7);
        CList<ULONG, ULONG> list;
        list.AddTail(1);
        EXPECT_EQ(Try(reports, 0, [&] { links.Get_Ref_List(0, list); }), Outcome::kThrown);
        EXPECT_TRUE(list.IsEmpty());
        EXPECT_FALSE(links.Get_Ref_List(7, list));
    }
}

}  // namespace
