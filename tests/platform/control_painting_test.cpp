// What controls look like.
#include <algorithm>
#include <functional>
#include <vector>

#include "recorded_window.h"

namespace {

using namespace rv_test;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr DWORD kShown = WS_CHILD | WS_VISIBLE;
constexpr int kWidth = 120, kHeight = 60;

using Look = std::vector<COLORREF>;

Look Look_Of(HWND window) {
    UpdateWindow(window);
    Look look;
    HDC const context = GetDC(window);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x)
            look.push_back(GetPixel(context, x, y));
    }
    ReleaseDC(window, context);
    return look;
}

template <class Record>
LPARAM Address_Of(Record& record) {
    return reinterpret_cast<LPARAM>(&record);
}

LPARAM Text(const char* text) {
    return reinterpret_cast<LPARAM>(text);
}

void Insert_Row(HWND list, UINT state) {
    LVITEMA item = {};
    item.mask = LVIF_TEXT | LVIF_STATE;
    item.pszText = const_cast<char*>("row");
    item.state = item.stateMask = state;
    SendMessageA(list, LVM_INSERTITEMA, 0, Address_Of(item));
}

void Insert_Column(HWND list) {
    LVCOLUMNA column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.pszText = const_cast<char*>("column");
    column.cx = 60;
    SendMessageA(list, LVM_INSERTCOLUMNA, 0, Address_Of(column));
}

void Insert_Tab(HWND tabs) {
    TCITEMA tab = {};
    tab.mask = TCIF_TEXT;
    tab.pszText = const_cast<char*>("tab");
    SendMessageA(tabs, TCM_INSERTITEMA, 0, Address_Of(tab));
}

void Send(HWND window, UINT message, WPARAM first, LPARAM second) {
    SendMessageA(window, message, first, second);
}

using Act = std::function<void(HWND)>;

TEST(ControlPainting, ShowsWhatChanges) {
    const Act nothing = [](HWND) {};
    const Act set_text = [](HWND window) { SetWindowTextA(window, "other"); };
    const Act disable = [](HWND window) { EnableWindow(window, FALSE); };
    const Act focus = [](HWND window) { SetFocus(window); };
    const Act type = [](HWND window) { Send(window, WM_CHAR, 'x', 1); };
    const Act check = [](HWND window) { Send(window, BM_SETCHECK, BST_CHECKED, 0); };
    const Act be_default = [](HWND window) { Send(window, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE); };
    const Act add = [](HWND window) { Send(window, LB_ADDSTRING, 0, Text("row")); };
    const Act choose = [](HWND window) { Send(window, LB_SETCURSEL, 0, 0); };
    const Act select = [](HWND window) {
        LVITEMA item = {};
        item.state = item.stateMask = LVIS_SELECTED;
        Send(window, LVM_SETITEMSTATE, 0, Address_Of(item));
    };
    const Act add_row = [](HWND window) { Insert_Row(window, 0); };
    const Act fill_list = [](HWND window) {
        Insert_Column(window);
        Insert_Row(window, 0);
    };
    const Act add_column = &Insert_Column, add_tab = &Insert_Tab;
    const Act two_tabs = [](HWND window) {
        Insert_Tab(window);
        Insert_Tab(window);
    };
    const Act set_date = [](HWND window) {
        SYSTEMTIME date = {1999, 12, 0, 31, 0, 0, 0, 0};
        Send(window, DTM_SETSYSTEMTIME, GDT_VALID, Address_Of(date));
    };
    const Act choose_tab = [](HWND window) { Send(window, TCM_SETCURSEL, 0, 0); };
    const struct {
        const char* why;
        const char* class_name;
        DWORD style;
        const Act &before, &change;
        bool is_of_header = false;
    } kRows[] = {
        {"text of a label", "Static", 0, nothing, set_text},
        {"disabled label", "Static", 0, nothing, disable},
        {"text of a button", "Button", BS_PUSHBUTTON, nothing, set_text},
        {"disabled button", "Button", BS_PUSHBUTTON, nothing, disable},
        {"default button", "Button", BS_PUSHBUTTON, nothing, be_default},
        {"checked box", "Button", BS_AUTOCHECKBOX, nothing, check},
        {"checked radio button", "Button", BS_AUTORADIOBUTTON, nothing, check},
        {"text of a group", "Button", BS_GROUPBOX, nothing, set_text},
        {"typing", "Edit", 0, focus, type},
        {"text of an edit", "Edit", 0, nothing, set_text},
        {"row of a list box", "ListBox", 0, nothing, add},
        {"chosen row", "ListBox", 0, add, choose},
        {"column", WC_LISTVIEWA, LVS_REPORT, nothing, add_column, true},
        {"row of a list", WC_LISTVIEWA, LVS_REPORT, fill_list, add_row},
        {"selected row", WC_LISTVIEWA, LVS_REPORT | LVS_SHOWSELALWAYS, fill_list, select},
        {"date", DATETIMEPICK_CLASSA, 0, nothing, set_date},
        {"disabled date", DATETIMEPICK_CLASSA, 0, nothing, disable},
        {"tab", WC_TABCONTROLA, 0, nothing, add_tab},
        {"chosen tab", WC_TABCONTROLA, 0, two_tabs, choose_tab},
    };
    const RecordedTop top;
    for (const auto& row : kRows) {
        HWND const window =
            Make_Window(row.class_name, kShown | row.style, top, 1, {0, 0, kWidth, kHeight});
        row.before(window);
        HWND const shown = row.is_of_header
                               ? reinterpret_cast<HWND>(SendMessageA(window, LVM_GETHEADER, 0, 0))
                               : window;
        const Look before = Look_Of(shown);
        InvalidateRect(shown, nullptr, TRUE);
        EXPECT_TRUE(Look_Of(shown) == before) << row.why << " painted again";
        row.change(window);
        EXPECT_FALSE(Look_Of(shown) == before) << row.why;
        EXPECT_FALSE(GetUpdateRect(shown, nullptr, FALSE)) << row.why;
        DestroyWindow(window);
    }
}

TEST(ControlPainting, UnderlinesTheMarkedCharacter) {
    const RecordedTop top;
    for (const char* class_name : {"Static", "Button"}) {
        HWND const window = Make_Window(class_name, kShown, top, 1, {0, 0, kWidth, kHeight});
        const auto look_of = [window](const char* text) {
            SetWindowTextA(window, text);
            return Look_Of(window);
        };
        EXPECT_TRUE(look_of("R&&dog") != look_of("R&dog")) << class_name;
        const Look marked = look_of("R do&g"), unmarked = look_of("R dog");
        std::vector<int> rows;
        for (int y = 0; y < kHeight; ++y) {
            const auto row = [y](const Look& look) { return look.begin() + y * kWidth; };
            if (!std::equal(row(marked), row(marked) + kWidth, row(unmarked))) rows.push_back(y);
        }
        EXPECT_EQ(rows.size(), 1u) << class_name;
        DestroyWindow(window);
    }
}

HBRUSH g_Brush;
DRAWITEMSTRUCT g_Drawn;

LRESULT CALLBACK Color_Controls(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_CTLCOLORSTATIC || message == WM_CTLCOLOREDIT ||
        message == WM_CTLCOLORLISTBOX) {
        SetTextColor(reinterpret_cast<HDC>(first), kRed);
        SetBkColor(reinterpret_cast<HDC>(first), kBlue);
        return reinterpret_cast<LRESULT>(g_Brush);
    }
    if (message == WM_DRAWITEM) {
        g_Drawn = *reinterpret_cast<const DRAWITEMSTRUCT*>(second);
        FillRect(g_Drawn.hDC, &g_Drawn.rcItem, g_Brush);
        return TRUE;
    }
    return DefWindowProcA(window, message, first, second);
}

TEST(ControlPainting, LetsTheParentChooseAndDraw) {
    const RecordedTop top;
    SetWindowLongPtrA(top, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Color_Controls));
    g_Brush = CreateSolidBrush(kBlue);
    for (const char* class_name : {"Static", "Edit", "ListBox"}) {
        HWND const window = Make_Window(class_name, kShown, top, 1, {0, 0, kWidth, kHeight});
        SendMessageA(window, LB_ADDSTRING, 0, Text("row"));
        const Look look = Look_Of(window);
        // A list box may have shrunk to whole rows.
        EXPECT_EQ(look[look.size() / 2 - 1], kBlue) << class_name;
        EXPECT_GT(std::count(look.begin(), look.end(), kRed), 5) << class_name;
        DestroyWindow(window);
    }
    HWND const drawn =
        Make_Window("Button", kShown | BS_OWNERDRAW, top, 7, {0, 0, kWidth, kHeight});
    EnableWindow(drawn, FALSE);
    const Look look = Look_Of(drawn);
    EXPECT_EQ(std::count(look.begin(), look.end(), kBlue), kWidth * kHeight);
    EXPECT_EQ(g_Drawn.CtlType, UINT{ODT_BUTTON});
    EXPECT_EQ(g_Drawn.CtlID, 7u);
    EXPECT_EQ(g_Drawn.hwndItem, drawn);
    EXPECT_EQ(g_Drawn.itemState, UINT{ODS_DISABLED});
    EXPECT_EQ(g_Drawn.rcItem.right, kWidth);
    DeleteObject(g_Brush);
}

LRESULT CALLBACK End_Controls(HWND window, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
            DestroyWindow(reinterpret_cast<HWND>(second));
            break;
        case WM_DRAWITEM:
            DestroyWindow(reinterpret_cast<const DRAWITEMSTRUCT*>(second)->hwndItem);
            break;
        default:
            break;
    }
    return DefWindowProcA(window, message, first, second);
}

TEST(ControlPainting, OutlivesWindowsThatEndByIt) {
    const RecordedTop top;
    SetWindowLongPtrA(top, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&End_Controls));
    const struct {
        const char* class_name;
        DWORD style;
    } kRows[] = {{"Static", 0},
                 {"Edit", 0},
                 {"ListBox", 0},
                 {"Button", BS_GROUPBOX},
                 {"Button", BS_OWNERDRAW}};
    for (const auto& row : kRows) {
        HWND const window =
            Make_Window(row.class_name, kShown | row.style, top, 1, {0, 0, kWidth, kHeight});
        UpdateWindow(window);
        EXPECT_FALSE(IsWindow(window)) << row.class_name;
    }
}

TEST(ControlPainting, MakesRoomForScrollBars) {
    constexpr DWORD kBars = WS_VSCROLL | WS_HSCROLL;
    const Act few_rows = [](HWND list) {
        Insert_Column(list);
        Insert_Row(list, 0);
    };
    const Act many_rows = [](HWND list) {
        Insert_Column(list);
        for (int row = 0; row < 20; ++row)
            Insert_Row(list, 0);
    };
    const Act wide_columns = [](HWND list) {
        for (int column = 0; column < 3; ++column)
            Insert_Column(list);
    };
    const Act no_longer = [&many_rows](HWND list) {
        many_rows(list);
        Send(list, LVM_DELETEALLITEMS, 0, 0);
    };
    const Act strings = [](HWND list) {
        for (int row = 0; row < 20; ++row)
            Send(list, LB_ADDSTRING, 0, Text("row"));
    };
    const struct {
        const char* why;
        const char* class_name;
        DWORD style;
        const Act& change;
        bool has_vertical, has_horizontal;
    } kRows[] = {
        {"few rows", WC_LISTVIEWA, LVS_REPORT, few_rows, false, false},
        {"many rows", WC_LISTVIEWA, LVS_REPORT, many_rows, true, false},
        {"wide columns", WC_LISTVIEWA, LVS_REPORT, wide_columns, false, true},
        {"no longer", WC_LISTVIEWA, LVS_REPORT, no_longer, false, false},
        {"strings", "ListBox", kBars, strings, true, false},
        {"strings, no bars", "ListBox", 0, strings, false, false},
    };
    const RecordedTop top;
    for (const auto& row : kRows) {
        HWND const window =
            Make_Window(row.class_name, kShown | row.style, top, 1, {0, 0, kWidth, kHeight});
        RECT before, after;
        GetClientRect(window, &before);
        row.change(window);
        GetClientRect(window, &after);
        EXPECT_EQ(before.right - after.right, row.has_vertical ? GetSystemMetrics(SM_CXVSCROLL) : 0)
            << row.why;
        EXPECT_EQ(before.bottom - after.bottom,
                  row.has_horizontal ? GetSystemMetrics(SM_CYHSCROLL) : 0)
            << row.why;
        DestroyWindow(window);
    }
}

}  // namespace
