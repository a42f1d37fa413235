// Lists in the hundred thousands, beside plain vectors of the same texts.

#include <RVUtils/RVListBox.h>
#include <RVUtils/RVListCtrl.h>
#include <benchmark/benchmark.h>
#include <strings.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "ratio_main.h"

namespace {

using rv_bench::Add_Figure;
using rv_bench::At_Most_Times;
using rv_bench::Set_Bar;

constexpr int kRows = 100'000;
constexpr int kColumns = 20;

void Set_Items(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * kRows);
}

std::vector<std::string> Texts(const std::string& prefix, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::string> texts;
    for (int row = 0; row < kRows; ++row) {
        std::string text = prefix;
        for (int letter = 0; letter < 12; ++letter)
            text += static_cast<char>((random() % 2 ? 'a' : 'A') + random() % 26);
        texts.push_back(text);
    }
    return texts;
}

bool Goes_Before(const std::string& left, const std::string& right) {
    return strcasecmp(left.c_str(), right.c_str()) < 0;
}

struct Dialog : CWnd {
    Dialog() { CreateEx(0, "#32770", "", WS_POPUP | WS_VISIBLE, {0, 0, 400, 300}, nullptr, 0); }
};

// Windows end with what they stand in.
template <class Control>
struct Shown {
    explicit Shown(DWORD style) {
        control.Create(style | WS_VISIBLE, {0, 0, 350, 250}, &dialog, 2);
    }

    Dialog dialog;
    Control control;
};

// --- the list control ----------------------------------------------------------------------------

struct List : Shown<RVListCtrl> {
    explicit List(int columns) : Shown(LVS_REPORT) {
        for (int column = 0; column < columns; ++column)
            control.InsertColumn(column, RVString("Column"), LVCFMT_LEFT, 100, column, true);
    }

    void Insert(int row, const std::string& text) {
        LVITEMA item = {};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = row;
        item.lParam = row;
        item.pszText = const_cast<char*>(text.c_str());
        SendMessageA(control.m_hWnd, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    }
};

// Sorted by two columns in turn, of which neither tells the order of the other: as a user finds a
// list, its rows lie anywhere in memory.
void Sort(benchmark::State& state, const std::string& prefix) {
    List list(2);
    const std::vector<std::string> texts = Texts(prefix, 1), others = Texts(prefix, 2);
    for (int row = 0; row < kRows; ++row) {
        list.Insert(row, texts[static_cast<std::size_t>(row)]);
        list.control.SetItemText(row, 1, others[static_cast<std::size_t>(row)].c_str());
    }
    list.control.SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
    int column = 0;
    for (auto _ : state) {
        list.control.Set_Column_Sort(column, true);
        list.control.Sort_Columns();
        column = 1 - column;
    }
    if (SendMessageA(list.control.m_hWnd, LVM_GETSELECTEDCOUNT, 0, 0) != kRows)
        state.SkipWithError("rows are not selected");
    Set_Items(state);
}

void Sort_Vector(benchmark::State& state, const std::string& prefix) {
    const std::vector<std::string> texts = Texts(prefix, 1);
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::string> sorted = texts;
        state.ResumeTiming();
        std::stable_sort(sorted.begin(), sorted.end(), Goes_Before);
        benchmark::DoNotOptimize(sorted.data());
    }
    Set_Items(state);
}

// --- the list box --------------------------------------------------------------------------------

struct Box : Shown<RVListBox> {
    Box() : Shown(WS_VSCROLL | WS_HSCROLL) {}

    void Add(const std::vector<std::string>& texts, std::size_t count) {
        for (std::size_t row = 0; row < count; ++row)
            control.AddString(texts[row].c_str());
    }
};

void Validate(benchmark::State& state) {
    Box box;
    box.Add(Texts("Drawing ", 1), kRows);
    CString absent("Drawing that is not there");
    for (auto _ : state) {
        if (!box.control.Validate_Text(absent, ULONG{kRows})) state.SkipWithError("wrong result");
    }
    Set_Items(state);
}

void Validate_In_Vector(benchmark::State& state) {
    const std::vector<std::string> texts = Texts("Drawing ", 1);
    const std::string absent = "Drawing that is not there";
    for (auto _ : state) {
        const bool found = std::any_of(texts.begin(), texts.end(), [&](const std::string& text) {
            return strcasecmp(text.c_str(), absent.c_str()) == 0;
        });
        if (found) state.SkipWithError("wrong result");
    }
    Set_Items(state);
}

const bool g_Registered = [] {
    const auto add = [](const std::string& name, auto... run) {
        benchmark::RegisterBenchmark(name.c_str(), run...)->Unit(benchmark::kMillisecond);
    };
    for (const auto& [kind, prefix] : {std::pair{"random texts", ""},
                                       std::pair{"a common prefix", "Plant 7/Unit 12/Drawing "}}) {
        const std::string sort = "Sort_Columns, 100,000 selected rows, " + std::string(kind);
        add(sort + "/ours", Sort, prefix);
        add(sort + "/stable_sort", Sort_Vector, prefix);
        Set_Bar({sort, At_Most_Times(2), 1, {}});
    }
    const std::string validate = "Validate_Text against 100,000";
    add(validate + "/ours", Validate);
    add(validate + "/strcasecmp", Validate_In_Vector);
    Set_Bar({validate, At_Most_Times(2), 0, {}});
    return true;
}();

// --- growth --------------------------------------------------------------------------------------

// How much longer a row takes among 100,000 than among 10,000: 1 where time grows with the rows, 10
// where it grows with their square. `work` gets the number of rows and gives the seconds, of which
// the least of three counts.
template <class Work>
double Growth(Work work) {
    const auto seconds_of = [&](int rows) {
        double least = work(rows);
        for (int again = 0; again < 2; ++again)
            least = std::min(least, work(rows));
        return least;
    };
    return seconds_of(kRows) / seconds_of(kRows / 10) / 10;
}

template <class Work>
double Seconds_Of(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Fill(List& list, const std::vector<std::string>& texts, int rows) {
    for (int row = 0; row < rows; ++row) {
        list.Insert(row, texts[static_cast<std::size_t>(row)]);
        for (int column = 1; column < kColumns; ++column)
            list.control.SetItemText(row, column, texts[static_cast<std::size_t>(row)].c_str());
    }
}

bool Find_All(const List& list, int rows) {
    int first, second;
    for (int row = 0; row + 1 < rows; row += 2) {
        if (!list.control.Get_Sort_Item_Idexes(row, row + 1, first, second)) return false;
    }
    return true;
}

// Of one step in the life of a list of 20 columns.
enum class Step { kInsert, kFind, kEmpty };

double Growth_Of(Step timed) {
    const std::vector<std::string> texts = Texts("", 1);
    return Growth([&](int rows) {
        List list(kColumns);
        bool found = false;
        const double insert = Seconds_Of([&] { Fill(list, texts, rows); });
        const double find = Seconds_Of([&] { found = Find_All(list, rows); });
        const double empty =
            Seconds_Of([&] { SendMessageA(list.control.m_hWnd, LVM_DELETEALLITEMS, 0, 0); });
        if (!found) return -1.0;
        return timed == Step::kInsert ? insert : timed == Step::kFind ? find : empty;
    });
}

// The time of a sort before which rows were looked for, in times of one without.
double Sort_After_Find() {
    List list(1);
    const std::vector<std::string> texts = Texts("", 1);
    for (int row = 0; row < kRows; ++row)
        list.Insert(row, texts[static_cast<std::size_t>(row)]);
    bool ascending = true;
    const auto sort = [&] {
        list.control.Set_Column_Sort(0, ascending = !ascending);
        return Seconds_Of([&] { list.control.Sort_Columns(); });
    };
    double alone = sort(), after = alone * 10;
    for (int again = 0; again < 5; ++again) {
        alone = std::min(alone, sort());
        if (!Find_All(list, 10)) return -1;
        after = std::min(after, sort());
    }
    return after / alone;
}

double Box_Growth() {
    const std::vector<std::string> texts = Texts("Drawing ", 1);
    return Growth([&](int rows) {
        Box box;
        return Seconds_Of([&] { box.Add(texts, static_cast<std::size_t>(rows)); });
    });
}

constexpr double kLinear = 2;  // what caches leave of it

const bool g_Figures =
    Add_Figure({"inserting rows of 20 columns", "times longer a row among 100,000", kLinear,
                [] { return Growth_Of(Step::kInsert); }}) &&
    Add_Figure({"finding rows by item data", "times longer a row among 100,000", kLinear,
                [] { return Growth_Of(Step::kFind); }}) &&
    Add_Figure({"emptying the list", "times longer a row among 100,000", kLinear,
                [] { return Growth_Of(Step::kEmpty); }}) &&
    Add_Figure({"sorting after finding", "times the sort alone", 1.2, &Sort_After_Find}) &&
    Add_Figure(
        {"adding strings to a list box", "times longer a row among 100,000", kLinear, &Box_Growth});

}  // namespace
