// Sorting of the list control.
#include <RVUtils/CException.h>
#include <RVUtils/CWinApp.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "allocation_sweep.h"
#include "list.h"

namespace {

using namespace rv_test;

// Three columns, of which the second one descends at its first click.
template <class List = RVListCtrl>
struct SortList : ShownList<List> {
    explicit SortList(DWORD style = 0) {
        SetWindowLongA(list.m_hWnd, GWL_STYLE, static_cast<LONG>(Style_Of(list.m_hWnd) | style));
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(list.InsertColumn(column, "heading", LVCFMT_LEFT, 60, -1, column != 1),
                      column);
    }

    // A row whose second column holds its place, from 9 downwards.
    void Add(const std::string& text, LPARAM data) {
        const int row = list.GetItemCount();
        EXPECT_EQ(list.InsertItem(row, text.c_str()), row);
        EXPECT_TRUE(list.SetItemText(row, 1, std::to_string(9 - row).c_str()));
        EXPECT_TRUE(list.SetItemData(row, static_cast<UINT_PTR>(data)));
    }
    std::string Texts() const {
        std::string texts;
        for (int row = 0; row < list.GetItemCount(); ++row)
            texts += list.GetItemText(row, 0).GetString() + std::string(" ");
        return texts;
    }

    using ShownList<List>::list;
};

TEST(ListSort, FollowsClicks) {
    struct Step {
        const char* why;
        int column;
        char what;  // 'c'lick, click 'r'ule, 'a'scending, 'd'escending
        int sorted;
        bool ascending;
        const char* arrows;
    };
    constexpr Step kSteps[] = {
        {"first click", 0, 'c', 0, true, "^--"},
        {"turned over", 0, 'c', 0, false, "v--"},
        {"and back", 0, 'c', 0, true, "^--"},
        {"one that descends", 1, 'c', 1, false, "-v-"},
        {"turned over", 1, 'c', 1, true, "-^-"},
        {"another", 2, 'c', 2, true, "--^"},
        {"the same by the rule", 2, 'r', 2, false, "--v"},
        {"a direction is not remembered", 1, 'r', 1, false, "-v-"},
        {"told", 0, 'd', 0, false, "v--"},
        {"told again", 0, 'd', 0, false, "v--"},
        {"told the other", 0, 'a', 0, true, "^--"},
        {"no sort", -1, 'a', -1, false, "---"},
        {"none again", -1, 'r', -1, false, "---"},
        {"the first again", 1, 'c', 1, false, "-v-"},
        {"no sort by the rule", -1, 'd', -1, false, "---"},
        {"no such column", 99, 'r', 99, true, "---"},
        {"no such column again", 99, 'r', 99, false, "---"},
        {"the greatest number", 0x7FFFFFFF, 'd', 0x7FFFFFFF, false, "---"},
        {"back to the first", 0, 'c', 0, true, "^--"},
    };
    for (const bool has_header : {true, false}) {
        SortList<> shown(has_header ? 0 : LVS_NOSORTHEADER);
        EXPECT_EQ(Arrows_Of(shown.list), has_header ? "^--" : "---") << "before any sort";
        for (const Step& step : kSteps) {
            if (step.what == 'c' && has_header)
                Click(shown.list, step.column);
            else if (step.what == 'c' || step.what == 'r')
                shown.list.Set_Column_Sort(step.column);
            else
                shown.list.Set_Column_Sort(step.column, step.what == 'a');
            int column = 77;
            bool ascending = !step.ascending;
            shown.list.Get_Column_Sort(column, ascending);
            EXPECT_EQ(column, step.sorted) << step.why;
            EXPECT_EQ(ascending, step.ascending) << step.why;
            EXPECT_EQ(Arrows_Of(shown.list), has_header ? step.arrows : "---") << step.why;
        }
    }
}

TEST(ListSort, OrdersByTextsWithoutRegardToCase) {
    std::mt19937 random(20260101);
    static const std::string kPrefixes[] = {"", "a common prefix "};
    for (const std::string& prefix : kPrefixes) {
        struct Row {
            std::string text, folded;
            LPARAM data;
        };
        // Numbers from 1 on, addresses, and numbers far apart.
        const auto data_of = [&random](int kind, int row) -> LPARAM {
            if (kind == 0) return row + 1;
            if (kind == 1) return 0x7F0000001000 + row * LPARAM{48};
            return static_cast<LPARAM>(random()) * (row % 2 ? 65537 : -1) * 8 + row % 8;
        };
        for (const int kind : {0, 1, 2}) {
            SortList<> shown;
            ShowWindow(shown.dialog.m_hWnd, SW_HIDE);
            std::vector<Row> rows;
            for (int row = 0; row < 300; ++row) {
                std::string text = prefix, folded;
                for (auto length = random() % 12; length > 0; --length)
                    text += "aAbBzZ_~ 1"[random() % 10];
                if (row == 150) text += std::string(250, 'Q');  // of which list controls keep 259
                for (const char letter : text)
                    folded +=
                        static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + 32 : letter);
                rows.push_back({text, folded, data_of(kind, row)});
                shown.Add(text, rows.back().data);
            }
            for (const bool ascending : {true, false, true}) {
                shown.list.Set_Column_Sort(0, ascending);
                shown.list.Sort_Columns();
                std::stable_sort(rows.begin(), rows.end(), [&](const Row& left, const Row& right) {
                    return ascending ? left.folded < right.folded : right.folded < left.folded;
                });
                std::vector<LPARAM> expected;
                for (const Row& row : rows)
                    expected.push_back(row.data);
                ASSERT_EQ(Data_Of(shown.list), expected) << prefix << kind << ascending;
            }
        }
    }
}

std::string g_Calls;
RVListCtrl* g_List = nullptr;

// By the last byte of the texts.
int Last_Byte(int column, CString first, LONG first_data, CString second, LONG second_data,
              LONG value) {
    EXPECT_EQ(value, 77);
    EXPECT_EQ(first_data, first.GetAt(0));
    EXPECT_EQ(second_data, second.GetAt(0));
    g_Calls = std::to_string(column);
    return 1000 * (first.GetAt(first.GetLength() - 1) - second.GetAt(second.GetLength() - 1));
}

TEST(ListSort, AsksTheCallback) {
    SortList<> shown;
    shown.list.Set_Sort_Callback(&Last_Byte, 77);
    g_Calls.clear();
    shown.list.Sort_Columns();
    EXPECT_EQ(g_Calls, "") << "an empty list";
    for (const char* const text : {"a3", "B1", "c2", "d1"})
        shown.Add(text, text[0]);
    Click(shown.list, 0);
    EXPECT_EQ(shown.Texts(), "B1 d1 c2 a3 ");
    EXPECT_EQ(g_Calls, "0");
    Click(shown.list, 0);
    EXPECT_EQ(shown.Texts(), "a3 c2 B1 d1 ");
    shown.list.Set_Sort_Callback(nullptr, 0);
    Click(shown.list, 1);
    EXPECT_EQ(shown.Texts(), "a3 B1 c2 d1 ") << "by their places";
    Click(shown.list, 2);
    EXPECT_EQ(shown.Texts(), "a3 B1 c2 d1 ") << "all texts are empty";
    shown.list.Set_Allow_Sort(false);
    Click(shown.list, 0);
    EXPECT_EQ(Arrows_Of(shown.list), "--^");
    shown.list.Set_Column_Sort(0, false);
    shown.list.Sort_Columns();
    EXPECT_EQ(shown.Texts(), "d1 c2 B1 a3 ") << "the program still sorts";
    shown.list.Set_Column_Sort(-1);
    shown.list.Set_Sort_Callback(
        [](int column, CString first, LONG first_data, CString, LONG second_data, LONG) {
            EXPECT_EQ(column, -1);
            EXPECT_STREQ(first, "");
            return static_cast<int>(first_data - second_data);
        },
        0);
    shown.list.Sort_Columns();
    EXPECT_EQ(shown.Texts(), "d1 c2 a3 B1 ") << "descending while there is no sort";
}

struct Application : CWinApp {
    int DoMessageBox(const char* text, UINT, UINT) override {
        shown += std::string(text) + "|";
        return 1;
    }

    std::string shown;
};

TEST(ListSort, SurvivesItsCallback) {
    Application application;
    SortList<> shown;
    g_List = &shown.list;
    for (const char* const text : {"b", "a", "d", "c"})
        shown.Add(text, text[0]);
    shown.list.Set_Column_Sort(0, true);
    shown.list.Set_Sort_Callback(
        [](int, CString, LONG, CString, LONG, LONG) -> int { throw std::string("text"); }, 0);
    EXPECT_THROW(shown.list.Sort_Columns(), std::string);
    EXPECT_EQ(shown.list.GetItemCount(), 4);
    Click(shown.list, 1);
    EXPECT_EQ(application.shown, "The operation failed.|");

    shown.list.Set_Sort_Callback(
        [](int, CString first, LONG, CString second, LONG, LONG) {
            EXPECT_FALSE(Send(g_List->m_hWnd, LVM_DELETEITEM, 0));
            EXPECT_FALSE(Send(g_List->m_hWnd, LVM_DELETEALLITEMS));
            EXPECT_EQ(g_List->InsertItem(0, "new"), -1);
            g_List->Sort_Columns();
            return first.Compare(second);
        },
        0);
    shown.list.Set_Column_Sort(0, true);
    shown.list.Sort_Columns();
    EXPECT_EQ(shown.Texts(), "a b c d ");
    shown.list.Set_Sort_Callback([](int, CString, LONG, CString, LONG, LONG) { return 1; }, 0);
    shown.list.Sort_Columns();
    shown.list.Set_Sort_Callback(nullptr, 0);
    shown.list.Sort_Columns();
    EXPECT_EQ(shown.Texts(), "a b c d ");
    EXPECT_TRUE(Send(shown.list.m_hWnd, LVM_DELETEITEM, 0));

    shown.list.Set_Column_Sort(0, false);
    const auto sort = [&] {
        try {
            shown.list.Sort_Columns();
        } catch (CMemoryException* error) {
            error->Delete();
        }
    };
    EXPECT_GT(Sweep_Allocations(sort), 0);
    EXPECT_EQ(shown.Texts(), "d c b ");
}

// A dialog that hears of each change of a selection.
struct HearingDialog : CWnd {
    void On_Change(NMHDR* notice, LRESULT*) {
        const auto& change = *reinterpret_cast<const NMLISTVIEW*>(notice);
        if ((change.uNewState ^ change.uOldState) & LVIS_SELECTED)
            g_Calls +=
                (change.uNewState & LVIS_SELECTED ? '+' : '-') + std::to_string(change.iItem);
    }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(HearingDialog, CWnd)
ON_NOTIFY(LVN_ITEMCHANGED, 1, &ThisClass::On_Change)
END_MESSAGE_MAP()

TEST(ListSort, KeepsTheSelectionAndRenewsIt) {
    SortList<> shown;
    shown.dialog.Detach();
    HearingDialog dialog;
    ASSERT_TRUE(dialog.SubclassWindow(GetParent(shown.list.m_hWnd)));
    for (const char* const text : {"b", "e", "a", "d", "c"})
        shown.Add(text, text[0]);
    for (const int row : {0, 1, 4})
        shown.list.SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    g_Calls.clear();
    shown.list.Set_Column_Sort(0, true);
    shown.list.Sort_Columns();
    EXPECT_EQ(g_Calls, "-1+1-2+2-4+4");
    std::string selected;
    for (int row = -1; (row = shown.list.GetNextItem(row, LVNI_SELECTED)) >= 0;)
        selected += shown.list.GetItemText(row, 0);
    EXPECT_EQ(selected, "bce");
}

TEST(ListSort, FindsRowsByTheirData) {
    SortList<> shown;
    const LPARAM kData[] = {5, -1, 0xFFFFFFFE, 0};
    for (const LPARAM data : kData)
        shown.Add("text", data);
    constexpr struct {
        LONG first, second;
        int first_index, second_index;
    } kRows[] = {{5, 0, 0, 3},  {0, 5, 3, 0},  {-1, -2, 1, 2}, {5, 5, 0, 0},
                 {6, 5, -1, 0}, {5, 6, 0, -1}, {-3, 6, -1, -1}};
    for (const auto& row : kRows) {
        int first = 77, second = 77;
        EXPECT_EQ(shown.list.Get_Sort_Item_Idexes(row.first, row.second, first, second),
                  row.first_index >= 0 && row.second_index >= 0);
        EXPECT_EQ(first, row.first_index);
        EXPECT_EQ(second, row.second_index);
    }
    shown.list.SetItemData(1, 5);
    shown.list.SetItemData(2, 5);
    shown.list.SetItemText(0, 0, "c");
    shown.list.SetItemText(1, 0, "b");
    shown.list.SetItemText(2, 0, "a");
    shown.list.SetItemText(3, 0, "b");
    shown.list.Set_Column_Sort(0, true);
    shown.list.Sort_Columns();
    EXPECT_EQ(shown.Texts(), "c b a b ") << "all that share data have the last one's text";
}

// One that sorts by itself.
class OwnSort : public RVListCtrl {
public:
    void Sort_Columns() override { g_Calls += "sort "; }
    LRESULT Click_With(LRESULT result) {
        NMLISTVIEW notice = {};
        On_Column_Click(&notice.hdr, &result);
        return result;
    }
};

TEST(ListSort, CanBeReplaced) {
    SortList<OwnSort> shown;
    g_Calls.clear();
    Click(shown.list, 2);
    EXPECT_EQ(shown.list.Click_With(77), 0);
    shown.list.Set_Allow_Sort(false);
    EXPECT_EQ(shown.list.Click_With(77), 77);
    EXPECT_EQ(g_Calls, "sort sort ");
}

}  // namespace
