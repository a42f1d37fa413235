// List views with their headers.
#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "allocation_sweep.h"
#include "recorded_window.h"

namespace {

using namespace rv_test;

constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | LVS_REPORT;

struct List {
    explicit List(DWORD style = 0) : window(Make_Window(WC_LISTVIEWA, kStyle | style, top, 5)) {}

    LRESULT Send(UINT message, WPARAM first = 0, LPARAM second = 0) const {
        return SendMessageA(window, message, first, second);
    }

    LRESULT Insert_Column(int place, const char* text, int width, int format = 0) const {
        LVCOLUMNA column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.pszText = const_cast<char*>(text);
        column.cx = width;
        column.fmt = format;
        return Send(LVM_INSERTCOLUMNA, static_cast<WPARAM>(place),
                    reinterpret_cast<LPARAM>(&column));
    }

    LRESULT Insert(int row, const char* text, LPARAM data, int column = 0) const {
        LVITEMA item = {};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = row;
        item.iSubItem = column;
        item.pszText = const_cast<char*>(text);
        item.lParam = data;
        return Send(LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    }

    LRESULT Set_Text(int row, int column, const char* text) const {
        LVITEMA item = {};
        item.iSubItem = column;
        item.pszText = const_cast<char*>(text);
        return Send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }

    std::string Text(int row, int column) const {
        char text[32] = "untouched";
        LVITEMA item = {};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = sizeof text;
        Send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        return text;
    }

    LPARAM Data(int row) const {
        LVITEMA item = {};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        EXPECT_TRUE(Send(LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item))) << row;
        return item.lParam;
    }

    LRESULT Set_State(int row, UINT state, UINT mask) const {
        LVITEMA item = {};
        item.state = state;
        item.stateMask = mask;
        return Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }

    LRESULT Find(LPARAM data, int start = -1) const {
        LVFINDINFOA wanted = {};
        wanted.flags = LVFI_PARAM;
        wanted.lParam = data;
        return Send(LVM_FINDITEMA, static_cast<WPARAM>(start), reinterpret_cast<LPARAM>(&wanted));
    }

    HWND Header() const { return reinterpret_cast<HWND>(Send(LVM_GETHEADER)); }

    // What is in a row of the list, or in all of them by their first column.
    std::string Cells(int row) const {
        std::string cells;
        for (int column = 0; column < SendMessageA(Header(), HDM_GETITEMCOUNT, 0, 0); ++column)
            cells += Text(row, column) + "|";
        return cells;
    }
    std::string Rows() const {
        std::string rows;
        for (int row = 0; row < Send(LVM_GETITEMCOUNT); ++row)
            rows += Text(row, 0);
        return rows;
    }

    const RecordedTop top;
    HWND const window;
};

HDITEMA Header_Item(HWND header, int item) {
    static char s_Text[16];
    s_Text[0] = '\0';
    HDITEMA record = {};
    record.mask = HDI_FORMAT | HDI_WIDTH | HDI_TEXT | HDI_IMAGE;
    record.pszText = s_Text;
    record.cchTextMax = sizeof s_Text;
    if (!SendMessageA(header, HDM_GETITEMA, static_cast<WPARAM>(item),
                      reinterpret_cast<LPARAM>(&record)))
        record.mask = 0;
    return record;
}

TEST(ListView, KeepsItsColumnsInItsHeader) {
    const List list;
    EXPECT_EQ(GetParent(list.Header()), list.window);
    const struct {
        int place;
        const char* text;
        LRESULT at;
        std::string headings;
    } kRows[] = {{0, "a", 0, "a"},
                 {9, "b", 1, "ab"},
                 {1, "c", 1, "acb"},
                 {-1, "d", -1, "acb"},
                 {0, "e", 0, "eacb"}};
    for (const auto& row : kRows) {
        EXPECT_EQ(list.Insert_Column(row.place, row.text, 40, LVCFMT_RIGHT), row.at) << row.text;
        std::string headings;
        for (int item = 0; Header_Item(list.Header(), item).mask != 0; ++item)
            headings += Header_Item(list.Header(), item).pszText;
        EXPECT_EQ(headings, row.headings);
    }
    EXPECT_EQ(Header_Item(list.Header(), 2).fmt, HDF_STRING | HDF_RIGHT);
    EXPECT_EQ(Header_Item(list.Header(), 0).fmt, HDF_STRING | HDF_LEFT);
    HDITEMA item = {};
    item.mask = HDI_FORMAT | HDI_IMAGE | HDI_WIDTH;
    item.fmt = HDF_STRING | HDF_IMAGE | HDF_BITMAP_ON_RIGHT;
    item.iImage = 1;
    item.cxy = 123;
    EXPECT_TRUE(SendMessageA(list.Header(), HDM_SETITEMA, 1, reinterpret_cast<LPARAM>(&item)));
    EXPECT_FALSE(SendMessageA(list.Header(), HDM_SETITEMA, 4, reinterpret_cast<LPARAM>(&item)));
    EXPECT_EQ(Header_Item(list.Header(), 1).fmt, item.fmt);
    EXPECT_EQ(Header_Item(list.Header(), 1).iImage, 1);
    EXPECT_STREQ(Header_Item(list.Header(), 1).pszText, "a");
    item.fmt = HDF_STRING;
    EXPECT_TRUE(SendMessageA(list.Header(), HDM_SETITEMA, 2, reinterpret_cast<LPARAM>(&item)));
    LVCOLUMNA column = {};
    column.mask = LVCF_FMT;
    EXPECT_TRUE(list.Send(LVM_GETCOLUMNA, 2, reinterpret_cast<LPARAM>(&column)));
    EXPECT_EQ(column.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_RIGHT) << "of the cells";
    EXPECT_EQ(list.Send(LVM_GETCOLUMNWIDTH, 1), 123);
    EXPECT_TRUE(list.Send(LVM_SETCOLUMNWIDTH, 1, 77));
    EXPECT_EQ(Header_Item(list.Header(), 1).cxy, 77);
    EXPECT_TRUE(list.Send(LVM_DELETECOLUMN, 0));
    EXPECT_FALSE(list.Send(LVM_DELETECOLUMN, 3));
    EXPECT_EQ(list.Send(LVM_GETCOLUMNWIDTH, 0), 77);
}

TEST(ListView, KeepsTextsInTheirColumns) {
    const List list;
    for (const char* heading : {"a", "b", "c"})
        list.Insert_Column(9, heading, 40);
    EXPECT_EQ(list.Insert(5, "0", 10), 0) << "behind all";
    EXPECT_EQ(list.Insert(0, "1", 11), 0);
    EXPECT_EQ(list.Insert(-1, "2", 12), -1);
    EXPECT_EQ(list.Insert(0, "2", 12, 1), -1) << "in another column";
    EXPECT_TRUE(list.Set_Text(0, 2, "x") && list.Set_Text(1, 1, "y"));
    EXPECT_FALSE(list.Set_Text(2, 0, "z") || list.Set_Text(0, 3, "z"));
    EXPECT_EQ(list.Cells(0), "1||x|");
    EXPECT_EQ(list.Cells(1), "0|y||");
    EXPECT_EQ(list.Text(0, 3) + list.Text(0, -1), "") << "columns that are none";
    EXPECT_EQ(list.Text(2, 0), "untouched") << "a row that is none";
    list.Insert_Column(1, "n", 40);
    EXPECT_EQ(list.Cells(0), "1|||x|");
    EXPECT_EQ(list.Cells(1), "0||y||");
    EXPECT_TRUE(list.Set_Text(0, 1, "new"));
    list.Send(LVM_DELETECOLUMN, 2);
    EXPECT_EQ(list.Cells(0), "1|new|x|");
    EXPECT_EQ(list.Cells(1), "0|||");
    EXPECT_EQ(list.Data(0), 11);
    EXPECT_TRUE(list.Send(LVM_DELETEITEM, 0));
    EXPECT_FALSE(list.Send(LVM_DELETEITEM, 1));
    EXPECT_EQ(list.Rows(), "0");
}

TEST(ListView, TellsEachChangeOfState) {
    const List list;
    list.Insert_Column(0, "a", 40);
    for (int row = 0; row < 3; ++row)
        list.Insert(row, "x", row);
    EXPECT_EQ(Take_Record(), "1:insert0 1:insert1 1:insert2");
    const struct {
        const char* why;
        int row;
        UINT state, mask;
        const char* record;
    } kRows[] = {
        {"selected", 0, 2, 2, "1:changing0/0>2 1:changed0/0>2"},
        {"again", 0, 2, 2, "1:changing0/2>2"},
        {"unselected", 0, 0, 2, "1:changing0/2>0 1:changed0/2>0"},
        {"focus", 0, 1, 1, "1:changing0/0>1 1:changed0/0>1"},
        {"focus moves", 2, 1, 1, "1:changing2/0>1 1:changing0/1>0 1:changed0/1>0 1:changed2/0>1"},
        {"all", -1, 2, 2,
         "1:changing0/0>2 1:changed0/0>2 1:changing1/0>2 1:changed1/0>2 1:changing2/1>3 "
         "1:changed2/1>3"},
        {"no row", 3, 2, 2, ""},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(list.Set_State(row.row, row.state, row.mask), row.row != 3) << row.why;
        EXPECT_EQ(Take_Record(), row.record) << row.why;
    }
    EXPECT_EQ(list.Send(LVM_GETSELECTEDCOUNT), 3);
    EXPECT_EQ(list.Send(LVM_GETITEMSTATE, 2, 0xF), 3);
    list.Set_State(1, 0, LVIS_SELECTED);
    const struct {
        int start;
        UINT wanted;
        LRESULT next;
    } kNext[] = {{-1, LVNI_SELECTED, 0}, {0, LVNI_SELECTED, 2}, {2, LVNI_SELECTED, -1},
                 {9, LVNI_SELECTED, -1}, {-1, LVNI_FOCUSED, 2}, {0, 0, 1}};
    for (const auto& row : kNext)
        EXPECT_EQ(list.Send(LVM_GETNEXTITEM, static_cast<WPARAM>(row.start), row.wanted), row.next)
            << row.start;
    Take_Record();
    list.Send(LVM_DELETEITEM, 0);
    EXPECT_EQ(Take_Record(), "1:changing0/2>0 1:changed0/2>0 1:delete0");
    list.Send(LVM_DELETEALLITEMS);
    EXPECT_EQ(Take_Record().substr(0, 12), "1:delete-all");
    EXPECT_EQ(list.Send(LVM_GETITEMCOUNT), 0);
}

// By the tens of the data; notes how often it was asked.
int CALLBACK By_Tens(LPARAM first, LPARAM second, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return static_cast<int>(first / 10 - second / 10);
}

TEST(ListView, SortsLikeAStableSort) {
    std::mt19937 random(7);
    for (const int count : {0, 1, 2, 3, 7, 100, 1000}) {
        const List list;
        std::vector<LPARAM> expected;
        for (int row = 0; row < count; ++row) {
            expected.push_back(static_cast<LPARAM>(random() % 997));
            list.Insert(row, "x", expected.back());
        }
        if (count > 2) list.Set_State(2, LVIS_SELECTED | LVIS_FOCUSED, 3);
        const LPARAM marked = count > 2 ? expected[2] : 0;
        int asked = 0;
        EXPECT_TRUE(list.Send(LVM_SORTITEMS, reinterpret_cast<WPARAM>(&asked),
                              reinterpret_cast<LPARAM>(&By_Tens)));
        std::ranges::stable_sort(expected, {}, [](LPARAM data) { return data / 10; });
        for (int row = 0; row < count; ++row)
            EXPECT_EQ(list.Data(row), expected[static_cast<std::size_t>(row)]) << row;
        EXPECT_LE(asked, 12 * count) << count;
        if (count <= 2) continue;
        const LRESULT at = list.Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
        EXPECT_EQ(list.Data(static_cast<int>(at)), marked) << "the state goes with its row";
        EXPECT_EQ(list.Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED), at);
    }
}

TEST(ListView, FindsRowsByTheirData) {
    const List list;
    const LPARAM data[] = {5, 7, 5, -1, 7};
    for (int row = 0; row < 5; ++row)
        list.Insert(row, "x", data[row]);
    for (const LPARAM wanted : {LPARAM{5}, LPARAM{7}, LPARAM{-1}, LPARAM{0}}) {
        for (int start = -1; start < 5; ++start) {
            const auto* const found = std::find(data + (start + 1), data + 5, wanted);
            EXPECT_EQ(list.Find(wanted, start), found == data + 5 ? -1 : found - data)
                << wanted << " behind " << start;
        }
    }
    list.Send(LVM_DELETEITEM, 0);
    EXPECT_EQ(list.Find(5), 1);
    list.Insert(0, "x", 8);
    EXPECT_EQ(list.Find(8), 0);
    EXPECT_EQ(list.Find(-1), 3);
}

TEST(ListView, TakesClicksOnHeadingsAndRows) {
    for (const DWORD style : {DWORD{0}, DWORD{LVS_NOSORTHEADER}}) {
        const List list(style);
        list.Insert_Column(0, "a", 100);
        list.Insert_Column(1, "b", 60);
        for (int row = 0; row < 3; ++row)
            list.Insert(row, "x", row);
        const auto mouse = [](HWND window, UINT message, int x, int y) {
            SendMessageA(window, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON,
                         MAKELPARAM(x, y));
        };
        Take_Record();
        mouse(list.Header(), WM_LBUTTONDOWN, 130, 5);
        mouse(list.Header(), WM_LBUTTONUP, 130, 5);
        EXPECT_EQ(Take_Record(), style == 0 ? "1:column1" : "");
        mouse(list.Header(), WM_LBUTTONDOWN, 99, 5);
        mouse(list.Header(), WM_MOUSEMOVE, 119, 5);
        mouse(list.Header(), WM_LBUTTONUP, 119, 5);
        EXPECT_EQ(Take_Record(), "1:tracked");
        EXPECT_EQ(list.Send(LVM_GETCOLUMNWIDTH, 0), 120);
        for (const int row : {2, 1}) {
            RECT place = {};
            list.Send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
            mouse(list.window, WM_LBUTTONDOWN, 5, place.top + 2);
            mouse(list.window, WM_LBUTTONUP, 5, place.top + 2);
            EXPECT_EQ(list.Send(LVM_GETSELECTEDCOUNT), 1) << row;
            EXPECT_EQ(list.Send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), 3), 3) << row;
        }
        EXPECT_EQ(GetFocus(), list.window);
        SendMessageA(list.window, WM_KEYDOWN, VK_UP, 0);
        EXPECT_EQ(list.Send(LVM_GETITEMSTATE, 0, 3), 3);
        EXPECT_EQ(list.Send(LVM_GETSELECTEDCOUNT), 1);
    }
}

TEST(ListView, KeepsImagesAndExtendedStyle) {
    const List list(LVS_SHAREIMAGELISTS);
    HIMAGELIST const images = ImageList_Create(16, 16, ILC_COLOR32, 1, 0);
    const auto value = reinterpret_cast<LPARAM>(images);
    EXPECT_EQ(list.Send(LVM_SETIMAGELIST, LVSIL_SMALL, value), 0);
    EXPECT_EQ(list.Send(LVM_SETIMAGELIST, LVSIL_SMALL, value), value);
    EXPECT_EQ(SendMessageA(list.Header(), HDM_GETIMAGELIST, 0, 0), value);
    EXPECT_EQ(list.Send(LVM_SETIMAGELIST, 7, value), 0);
    EXPECT_EQ(list.Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT), 0);
    EXPECT_EQ(list.Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 1, 1), LRESULT{LVS_EX_FULLROWSELECT});
    EXPECT_EQ(list.Send(LVM_GETEXTENDEDLISTVIEWSTYLE), LRESULT{LVS_EX_FULLROWSELECT} | 1);
    DestroyWindow(list.window);
    EXPECT_TRUE(ImageList_Destroy(images)) << "a shared one";
}

#if !defined(_WIN32)  // where the order of a list is not to be touched from within
List* g_Sorted;

int CALLBACK Touch_Rows(LPARAM first, LPARAM second, LPARAM) {
    EXPECT_FALSE(g_Sorted->Send(LVM_DELETEITEM, 0) || g_Sorted->Send(LVM_DELETEALLITEMS));
    EXPECT_EQ(g_Sorted->Insert(0, "x", 1), -1);
    EXPECT_TRUE(g_Sorted->Set_Text(0, 0, "touched"));
    return first == 0 || second % 2 ? -1 : 1;  // no order at all
}

int CALLBACK End_List(LPARAM, LPARAM, LPARAM) {
    DestroyWindow(g_Sorted->window);
    return 1;
}

int CALLBACK By_Chance(LPARAM, LPARAM, LPARAM random) {
    return (*reinterpret_cast<std::mt19937*>(random))() % 2 == 0 ? -1 : 1;
}

TEST(ListView, LosesNoRowToAnOrderThatContradictsItself) {
    std::mt19937 random(11);
    for (int count = 2; count < 80; ++count) {
        const List list;
        for (int row = 0; row < count; ++row)
            list.Insert(row, "x", row);
        list.Send(LVM_SORTITEMS, reinterpret_cast<WPARAM>(&random),
                  reinterpret_cast<LPARAM>(&By_Chance));
        std::vector<LPARAM> data, expected(static_cast<std::size_t>(count));
        for (int row = 0; row < count; ++row)
            data.push_back(list.Data(row));
        std::iota(expected.begin(), expected.end(), 0);
        EXPECT_TRUE(std::ranges::is_permutation(data, expected)) << count;
    }
}

TEST(ListView, SurvivesAnOrderThatTouchesIt) {
    List list;
    g_Sorted = &list;
    for (int row = 0; row < 50; ++row)
        list.Insert(row, "x", row);
    list.Send(LVM_SORTITEMS, 0, reinterpret_cast<LPARAM>(&Touch_Rows));
    std::vector<bool> seen(50);
    for (int row = 0; row < 50; ++row)
        seen[static_cast<std::size_t>(list.Data(row))] = true;
    EXPECT_TRUE(std::ranges::all_of(seen, std::identity{}));
    list.Send(LVM_SORTITEMS, 0, reinterpret_cast<LPARAM>(&End_List));
    EXPECT_FALSE(IsWindow(list.window));
}

TEST(ListView, SurvivesMissingMemory) {
    Sweep_Allocations([] {
        const List list;
        if (list.Insert_Column(0, "a", 10) != 0 || list.Insert_Column(1, "b", 10) != 1) return;
        const LRESULT rows[] = {list.Insert(0, "one", 1), list.Insert(1, "two", 2)};
        const bool is_set = list.Set_Text(0, 1, "text") != 0;
        if (rows[0] == 0) {
            EXPECT_EQ(list.Text(0, 1), is_set ? "text" : "");
        }
        if (rows[0] == 0 && rows[1] == 1) {
            EXPECT_EQ(list.Find(2), 1);
            int asked = 0;
            list.Send(LVM_SORTITEMS, reinterpret_cast<WPARAM>(&asked),
                      reinterpret_cast<LPARAM>(&By_Tens));
        }
        list.Insert_Column(0, "c", 10);
    });
}
#endif

}  // namespace
