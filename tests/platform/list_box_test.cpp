// List boxes and tab controls.
#include "allocation_sweep.h"
#include "recorded_window.h"

namespace {

using namespace rv_test;

constexpr DWORD kChild = WS_CHILD | WS_VISIBLE;

std::string Rows(HWND list) {
    std::string rows;
    for (int row = 0; row < SendMessageA(list, LB_GETCOUNT, 0, 0); ++row) {
        char text[16] = "";
        const auto length = SendMessageA(list, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0);
        EXPECT_EQ(SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(row),
                               reinterpret_cast<LPARAM>(text)),
                  length);
        rows += std::string(text) + " ";
    }
    return rows;
}

TEST(ListBox, KeepsItsRows) {
    const struct {
        const char* why;
        UINT message;
        int row;
        const char* text;
        LRESULT answer;
        const char* rows;
        const char* sorted;  // with LBS_SORT
    } kRows[] = {
        {"added", LB_ADDSTRING, 0, "m", 0, "m ", "m "},
        {"inserted", LB_INSERTSTRING, 0, "z", 0, "z m ", "z m "},
        {"behind all", LB_INSERTSTRING, -1, "n", 2, "z m n ", "z m n "},
        {"beyond all", LB_INSERTSTRING, 4, "x", LB_ERR, "z m n ", "z m n "},
        {"below all", LB_INSERTSTRING, -2, "x", LB_ERR, "z m n ", "z m n "},
        {"deleted", LB_DELETESTRING, 0, nullptr, 2, "m n ", "m n "},
        {"no row", LB_DELETESTRING, 2, nullptr, LB_ERR, "m n ", "m n "},
        {"added", LB_ADDSTRING, 0, "B", 2, "m n B ", "B m n "},
        {"empty", LB_INSERTSTRING, 1, "", 1, "m  n B ", "B  m n "},
        {"emptied", LB_RESETCONTENT, 0, nullptr, 0, "", ""},
    };
    for (const DWORD style : {DWORD{0}, DWORD{LBS_SORT}}) {
        const RecordedTop top;
        HWND const list = Make_Window("ListBox", kChild | style, top, 3);
        for (const auto& row : kRows) {
            const LRESULT answer = SendMessageA(list, row.message, static_cast<WPARAM>(row.row),
                                                reinterpret_cast<LPARAM>(row.text));
            EXPECT_TRUE(style != 0 || answer == row.answer) << row.why << answer;
            EXPECT_EQ(Rows(list), style == 0 ? row.rows : row.sorted) << row.why;
        }
        char untouched = 'u';
        EXPECT_EQ(SendMessageA(list, LB_GETTEXT, 0, reinterpret_cast<LPARAM>(&untouched)), LB_ERR);
        EXPECT_EQ(SendMessageA(list, LB_GETTEXTLEN, 0, 0), LB_ERR);
        EXPECT_EQ(untouched, 'u');
    }
}

TEST(ListBox, KeepsItsExtentWhenItIsEmptied) {
    const RecordedTop top;
    HWND const list = Make_Window("ListBox", kChild | WS_HSCROLL, top, 3);
    EXPECT_EQ(SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0), 0);
    SendMessageA(list, LB_SETHORIZONTALEXTENT, 300, 0);
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    EXPECT_EQ(SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0), 300);
}

TEST(ListBox, IsChosenFromByTheUser) {
    const RecordedTop top;
    HWND const list = Make_Window("ListBox", kChild | LBS_NOTIFY, top, 3);
    for (const char* text : {"a", "b", "c"})
        SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), LB_ERR);
    RECT place = {};
    SendMessageA(list, LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&place));
    SendMessageA(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, place.top + 2));
    SendMessageA(list, WM_LBUTTONUP, 0, MAKELPARAM(5, place.top + 2));
    EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), 1);
    Take_Record();
    SendMessageA(list, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(Take_Record(), "1:command3/1");
    EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), 2);
    SendMessageA(list, LB_DELETESTRING, 0, 0);
    EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), 1);
    EXPECT_EQ(SendMessageA(list, LB_SETCURSEL, 0, 0), 0);
    EXPECT_EQ(SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(-1), 0), LB_ERR);
    EXPECT_EQ(Take_Record(), "") << "what a program does is not told";
}

TEST(TabControl, KeepsTheDataOfItsTabs) {
    const RecordedTop top;
    HWND const tabs = Make_Window(WC_TABCONTROLA, kChild, top, 4);
    const auto send = [tabs](UINT message, int tab, LPARAM data = 0) {
        char text[] = "tab";
        TCITEMA item = {};
        item.mask = TCIF_PARAM | (message == TCM_INSERTITEMA ? TCIF_TEXT : 0);
        item.pszText = text;
        item.lParam = data;
        const LRESULT answer =
            SendMessageA(tabs, message, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&item));
        return message == TCM_GETITEMA ? (answer ? item.lParam : -7) : answer;
    };
    EXPECT_EQ(send(TCM_INSERTITEMA, 0, 10), 0);
    EXPECT_EQ(send(TCM_INSERTITEMA, 9, 11), 1);
    EXPECT_EQ(send(TCM_INSERTITEMA, 1, 12), 1);
    EXPECT_EQ(send(TCM_INSERTITEMA, -1, 13), -1);
    const LPARAM expected[] = {10, 12, 11, -7};
    for (const int tab : {0, 1, 2, 3})
        EXPECT_EQ(send(TCM_GETITEMA, tab), expected[tab]) << tab;
    EXPECT_EQ(send(TCM_GETITEMA, -1), -7);
    EXPECT_TRUE(send(TCM_SETITEMA, 1, 99));
    EXPECT_EQ(send(TCM_GETITEMA, 1), 99);
    EXPECT_EQ(SendMessageA(tabs, TCM_GETCURSEL, 0, 0), 0);
    RECT place = {};
    SendMessageA(tabs, TCM_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&place));
    SetFocus(tabs);
    Take_Record();
    SendMessageA(tabs, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.left + 3, place.top + 3));
    EXPECT_EQ(Take_Record(), "1:choosing 1:chosen");
    EXPECT_EQ(SendMessageA(tabs, TCM_GETCURSEL, 0, 0), 2);
}

TEST(ListBox, ShowsWholeRows) {
    const RecordedTop top;
    HWND const list = Make_Window("ListBox", kChild | WS_BORDER, top, 3);
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("a"));
    RECT row;
    SendMessageA(list, LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
    for (int rows : {1, 3}) {
        for (int rest : {0, 1, 9}) {
            const int height = 2 + rows * static_cast<int>(row.bottom) + rest;
            MoveWindow(list, 5, 5, 90, height, FALSE);
            RECT inside;
            GetClientRect(list, &inside);
            EXPECT_EQ(inside.bottom, rows * row.bottom) << height;
            EXPECT_EQ(inside.right, 88) << height;
        }
    }
    HWND const cut = Make_Window("ListBox", kChild | LBS_NOINTEGRALHEIGHT, top, 4);
    MoveWindow(cut, 5, 5, 90, 37, FALSE);
    RECT inside;
    GetClientRect(cut, &inside);
    EXPECT_EQ(inside.bottom, 37);
}

}  // namespace
