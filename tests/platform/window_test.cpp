// Making, ending, finding and placing windows, and the focus.
#include "recorded_window.h"

#include <iterator>
#include <vector>

#include "allocation_sweep.h"

namespace {

using namespace rv_test;

constexpr DWORD kChild = WS_CHILD | WS_VISIBLE;

TEST(Window, TellsItsMakingAndItsEndInOrder) {
    HWND const top = Make_Recorded(WS_POPUP, nullptr, 1);
    EXPECT_EQ(Take_Record(), "0:before 0:create");
    HWND const child = Make_Recorded(kChild, top, 2);
    Make_Recorded(kChild, child, 3);
    Make_Recorded(kChild, top, 4);
    HWND const owned = Make_Recorded(WS_POPUP, child, 5);
    Make_Recorded(WS_POPUP, owned, 6);
    Take_Record();
    EXPECT_TRUE(DestroyWindow(top));
    EXPECT_EQ(Take_Record(),
              "6:destroy 6:gone 5:destroy 5:gone "
              "1:destroy 2:destroy 3:destroy 4:destroy 3:gone 2:gone 4:gone 1:gone");
    EXPECT_FALSE(IsWindow(top) || IsWindow(child) || IsWindow(owned));
}

TEST(Window, CanRefuseToBeMade) {
    g_BeforeCreate = FALSE;
    EXPECT_EQ(Make_Recorded(WS_POPUP, nullptr, 1), nullptr);
    EXPECT_EQ(Take_Record(), "0:before 0:gone");
    g_BeforeCreate = TRUE;
    g_Create = -1;
    EXPECT_EQ(Make_Recorded(WS_POPUP, nullptr, 1), nullptr);
    EXPECT_EQ(Take_Record().substr(0, 17), "0:before 0:create");
    g_Create = 0;
    EXPECT_EQ(FindWindowA(kRecordedClass, nullptr), nullptr);
}

HWND g_Ends, g_Ended;
UINT g_EndsAt;

// Writes down what it is told, and ends a window when another one is told something, once.
LRESULT CALLBACK End_Another(HWND window, UINT message, WPARAM first, LPARAM second) {
    Record_Message(window, message, first, second);
    if (window == g_Ends && message == g_EndsAt) {
        g_Ends = nullptr;
        DestroyWindow(g_Ended);
    }
    return DefWindowProcA(window, message, first, second);
}

#if defined(_WIN32)  // where who asks for the end once more hears of it once more
constexpr const char* kToldOnce[] = {":gone "};
#else
constexpr const char* kToldOnce[] = {":destroy ", ":gone "};
#endif

TEST(Window, CanEndAnyWindowWhileOneIsToldSomething) {
    enum Who { kTop, kFirst, kInFirst, kSecond, kPopup, kNumber };
    const struct {
        const char* why;
        Who asked;  // to set a text, or to end
        UINT message;
        Who ends, ended;
    } kRows[] = {
        {"itself in a message", kFirst, WM_SETTEXT, kFirst, kFirst},
        {"its parent in a message", kInFirst, WM_SETTEXT, kInFirst, kTop},
        {"itself while it ends", kTop, WM_DESTROY, kTop, kTop},
        {"a child while it ends", kTop, WM_DESTROY, kTop, kFirst},
        {"the parent while all ends", kTop, WM_DESTROY, kInFirst, kTop},
        {"the parent while it ends", kInFirst, WM_DESTROY, kInFirst, kTop},
        {"an outer one while two end", kFirst, WM_DESTROY, kInFirst, kTop},
        {"the parent at its very end", kInFirst, WM_NCDESTROY, kInFirst, kTop},
        {"an outer one at a child's end", kFirst, WM_NCDESTROY, kInFirst, kTop},
        {"a window that is next", kTop, WM_DESTROY, kInFirst, kSecond},
        {"a window that was told", kTop, WM_DESTROY, kSecond, kFirst},
        {"its owner while it ends", kPopup, WM_DESTROY, kPopup, kTop},
        {"its owner at its very end", kPopup, WM_NCDESTROY, kPopup, kTop},
        {"itself as it loses the focus", kSecond, WM_KILLFOCUS, kSecond, kSecond},
        {"its parent as it loses the focus", kSecond, WM_KILLFOCUS, kSecond, kTop},
    };
    for (const auto& row : kRows) {
        const RecordedTop outer;
        HWND windows[kNumber] = {Make_Recorded(WS_POPUP | WS_VISIBLE, outer, kTop)};
        windows[kFirst] = Make_Recorded(kChild, windows[kTop], kFirst);
        windows[kInFirst] = Make_Recorded(kChild, windows[kFirst], kInFirst);
        windows[kSecond] = Make_Recorded(kChild, windows[kTop], kSecond);
        windows[kPopup] = Make_Recorded(WS_POPUP, windows[kTop], kPopup);
        for (HWND const window : windows)
            SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&End_Another));
        SetFocus(windows[kSecond]);
        Take_Record();
        g_Ends = windows[row.ends];
        g_EndsAt = row.message;
        g_Ended = windows[row.ended];
        if (row.message == WM_SETTEXT)
            SetWindowTextA(windows[row.asked], "another");
        else
            DestroyWindow(windows[row.asked]);
        EXPECT_FALSE(IsWindow(windows[row.asked]) || IsWindow(windows[row.ended])) << row.why;
        DestroyWindow(windows[kTop]);
        const std::string record = Take_Record().append(" ").insert(0, 1, ' ');
        for (int who = 0; who < kNumber; ++who) {
            EXPECT_FALSE(IsWindow(windows[who])) << row.why;
            for (const char* end : kToldOnce) {
                const std::string told = std::to_string(who).append(end).insert(0, 1, ' ');
                const std::size_t at = record.find(told);
                ASSERT_NE(at, std::string::npos) << row.why << told;
                EXPECT_EQ(record.find(told, at + 1), std::string::npos) << row.why << told;
            }
        }
        EXPECT_TRUE(IsWindow(outer)) << row.why;
        EXPECT_EQ(GetFocus() && !IsWindow(GetFocus()), false) << row.why;
    }
}

TEST(Window, IsFoundByIdAndKnowsItsParentAndClass) {
    const RecordedTop top;
    HWND const child = Make_Recorded(kChild, top, 7);
    HWND const twin = Make_Recorded(kChild, top, 7);
    HWND const inner = Make_Window("bUTTON", kChild, child, 8);
    HWND const owned = Make_Recorded(WS_POPUP, child, 9);
    EXPECT_EQ(GetDlgItem(top, 7), child);
    EXPECT_EQ(GetDlgItem(top, 8), nullptr) << "a child of a child";
    EXPECT_EQ(GetDlgCtrlID(inner), 8);
    EXPECT_EQ(GetParent(inner), child);
    EXPECT_EQ(GetParent(owned), top.window);
    EXPECT_EQ(GetParent(top), nullptr);
    EXPECT_NE(child, twin);
    char name[8] = {};
    EXPECT_EQ(GetClassNameA(inner, name, 8), 6);
    EXPECT_STREQ(name, "Button");
    EXPECT_EQ(GetClassNameA(inner, name, 4), 3);
    EXPECT_STREQ(name, "But");
}

LRESULT CALLBACK Answer_Seven(HWND, UINT, WPARAM, LPARAM) {
    return 7;
}

TEST(Window, HandsItsMessagesToTheProcedureThatItWasGiven) {
    const RecordedTop top;
    HWND const button = Make_Window("Button", kChild | BS_AUTOCHECKBOX, top, 1);
    const auto own =
        SetWindowLongPtrA(button, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Answer_Seven));
    EXPECT_EQ(SendMessageA(button, BM_GETCHECK, 0, 0), 7);
    EXPECT_EQ(CallWindowProcA(reinterpret_cast<WNDPROC>(own), button, BM_GETCHECK, 0, 0), 0);
    EXPECT_EQ(SetWindowLongPtrA(button, GWLP_WNDPROC, own),
              reinterpret_cast<LONG_PTR>(&Answer_Seven));
    EXPECT_EQ(SendMessageA(button, BM_SETCHECK, BST_CHECKED, 0), 0);
    EXPECT_EQ(SendMessageA(button, BM_GETCHECK, 0, 0), BST_CHECKED);
    for (const int index : {GWLP_USERDATA, GWLP_ID}) {
        SetWindowLongPtrA(button, index, 0x1234);
        EXPECT_EQ(SetWindowLongPtrA(button, index, 5), 0x1234) << index;
        EXPECT_EQ(GetWindowLongPtrA(button, index), 5) << index;
    }
    EXPECT_EQ(GetWindowLongA(button, GWL_STYLE), LONG{WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX});
}

TEST(Window, KeepsItsText) {
    for (const char* class_name : {kRecordedClass, "Button", "Static", "Edit", "#32770"}) {
        const RecordedTop top;
        HWND const window = Make_Window(class_name, kChild, top, 1);
        char text[8] = "";
        EXPECT_EQ(GetWindowTextA(window, text, 8), 4) << class_name;
        EXPECT_STREQ(text, "text");
        EXPECT_EQ(GetWindowTextA(window, text, 3), 2) << class_name;
        EXPECT_STREQ(text, "te");
        EXPECT_TRUE(SetWindowTextA(window, "longer"));
        EXPECT_EQ(GetWindowTextLengthA(window), 6) << class_name;
        EXPECT_TRUE(SetWindowTextA(window, ""));
        EXPECT_EQ(GetWindowTextA(window, text, 8), 0) << class_name;
        EXPECT_STREQ(text, "");
    }
}

TEST(Window, HasAnInsideWithinItsFrame) {
    const struct {
        const char* why;
        DWORD style, extended_style;
        int frame;
    } kRows[] = {
        {"no frame", 0, 0, 0},
        {"a line", WS_BORDER, 0, 1},
        {"sunken", 0, WS_EX_CLIENTEDGE, 2},
        {"both", WS_BORDER, WS_EX_CLIENTEDGE, 3},
    };
    const RecordedTop top;
    MoveWindow(top, 30, 40, 400, 300, FALSE);
    for (const auto& row : kRows) {
        HWND const outer = Make_Window(kRecordedClass, kChild | row.style, top, 1,
                                       {10, 20, 210, 120}, row.extended_style);
        HWND const inner = Make_Window(kRecordedClass, kChild, outer, 1, {5, 6, 15, 16});
        RECT place;
        EXPECT_TRUE(GetClientRect(outer, &place));
        EXPECT_EQ(place.right, 200 - 2 * row.frame) << row.why;
        EXPECT_EQ(place.bottom, 100 - 2 * row.frame) << row.why;
        EXPECT_TRUE(GetWindowRect(inner, &place));
        EXPECT_EQ(place.left, 30 + 10 + row.frame + 5) << row.why;
        EXPECT_EQ(place.bottom, 40 + 20 + row.frame + 16) << row.why;
        SetWindowPos(inner, nullptr, 50, 60, 70, 80, SWP_NOSIZE | SWP_NOZORDER);
        EXPECT_TRUE(GetWindowRect(inner, &place));
        EXPECT_EQ(place.right, 30 + 10 + row.frame + 50 + 10) << row.why;
        DestroyWindow(outer);
    }
}

TEST(Window, GathersWhatHasToBePainted) {
    const RecordedTop top;
    HWND const child = Make_Recorded(kChild, top, 2);
    const RECT parts[] = {{10, 10, 20, 20}, {190, 50, 300, 60}};
    RECT update;
    ValidateRect(child, nullptr);
    EXPECT_FALSE(GetUpdateRect(child, nullptr, FALSE));
    for (const RECT& part : parts)
        EXPECT_TRUE(InvalidateRect(child, &part, TRUE));
    EXPECT_TRUE(GetUpdateRect(child, &update, FALSE));
    EXPECT_TRUE(update.left == 10 && update.top == 10 && update.right == 200 &&
                update.bottom == 60);
    ValidateRect(child, nullptr);
    ShowWindow(child, SW_HIDE);
    InvalidateRect(child, nullptr, TRUE);
    EXPECT_FALSE(GetUpdateRect(child, nullptr, FALSE)) << "hidden";
    ShowWindow(child, SW_SHOW);
    EXPECT_TRUE(GetUpdateRect(child, nullptr, FALSE));
}

TEST(Focus, GoesToWhatIsShownAndEnabled) {
    const RecordedTop top;
    HWND const outer = Make_Recorded(kChild, top, 2);
    HWND const inner = Make_Recorded(kChild, outer, 3);
    HWND const other = Make_Recorded(kChild, top, 4);
    const struct {
        const char* why;
        HWND window;  // that is disabled or hidden
        bool is_hidden;
    } kRefused[] = {
        {"disabled", inner, false},
        {"in a disabled one", outer, false},
#if !defined(_WIN32)  // where Wine gives the focus to what is hidden
        {"hidden", inner, true},
        {"in a hidden one", outer, true},
#endif
    };
    SetFocus(other);
    for (const auto& row : kRefused) {
        const auto set_refusing = [&row](bool refuse) {
            if (row.is_hidden)
                ShowWindow(row.window, refuse ? SW_HIDE : SW_SHOW);
            else
                EnableWindow(row.window, !refuse);
        };
        set_refusing(true);
        Take_Record();
        EXPECT_EQ(SetFocus(inner), nullptr) << row.why;
        EXPECT_EQ(GetFocus(), other) << row.why;
        EXPECT_EQ(Take_Record(), "") << row.why;
        set_refusing(false);
    }
    Take_Record();
    EXPECT_EQ(SetFocus(inner), other);
    EXPECT_EQ(Take_Record(), "4:unfocus 3:focus");
    EXPECT_EQ(SetFocus(inner), inner);
    EXPECT_EQ(Take_Record(), "");
    EXPECT_EQ(EnableWindow(inner, FALSE), FALSE);
    EXPECT_EQ(Take_Record(), "3:unfocus 3:disable");
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(EnableWindow(inner, FALSE), TRUE);
    EXPECT_EQ(EnableWindow(inner, TRUE), TRUE);
    EXPECT_EQ(Take_Record(), "3:enable");
    EXPECT_EQ(SetFocus(inner), nullptr) << "nobody had it";
    ShowWindow(inner, SW_HIDE);
    EXPECT_EQ(GetFocus(), outer) << "from what is hidden to its parent";
    EXPECT_EQ(SetFocus(nullptr), outer);
    EXPECT_EQ(GetFocus(), nullptr);
    SetFocus(other);
    Take_Record();
    DestroyWindow(other);
    EXPECT_EQ(Take_Record(), "4:unfocus 1:focus 4:destroy 4:gone");
    EXPECT_EQ(GetFocus(), top.window);
}

TEST(Window, ShowsAndHidesChildren) {
    const RecordedTop top;
    HWND const outer = Make_Recorded(kChild, top, 2), inner = Make_Recorded(kChild, outer, 3);
    EXPECT_TRUE(IsWindowVisible(inner));
    EXPECT_TRUE(ShowWindow(outer, SW_HIDE));
    EXPECT_FALSE(IsWindowVisible(inner));
    EXPECT_TRUE(ShowWindow(inner, SW_SHOW)) << "what it is in does not count";
    EXPECT_FALSE(ShowWindow(outer, SW_SHOW));
    ShowWindow(top, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(inner));
}

TEST(Window, OperationsFindNoWindowBehindAHandleThatEnded) {
    HWND ended;
    {
        const RecordedTop top;
        ended = top;
    }
    RECT place = {};
    char text[4] = "abc";
    const LRESULT results[] = {
        GetWindowLongPtrA(ended, GWL_STYLE),
        SetWindowLongPtrA(ended, GWLP_USERDATA, 1),
        GetDlgCtrlID(ended),
        GetDlgItem(ended, 1) != nullptr,
        GetParent(ended) != nullptr,
        GetClassNameA(ended, text, 4),
        GetWindowTextA(ended, text, 4),
        SetWindowTextA(ended, "x"),
        GetClientRect(ended, &place),
        GetWindowRect(ended, &place),
        MoveWindow(ended, 0, 0, 1, 1, FALSE),
        ShowWindow(ended, SW_SHOW),
        EnableWindow(ended, TRUE),
        IsWindowEnabled(ended),
        SetFocus(ended) != nullptr,
        InvalidateRect(ended, &place, FALSE),
        GetUpdateRect(ended, nullptr, FALSE),
        DestroyWindow(ended),
    };
    for (std::size_t index = 0; index < std::size(results); ++index)
        EXPECT_EQ(results[index], 0) << index;
    SetLastError(0);
    EXPECT_EQ(SendMessageA(ended, WM_SETTEXT, 0, 0), 0);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_WINDOW_HANDLE});
}

TEST(Window, SurvivesMissingMemory) {
    Sweep_Allocations([] {
        HWND const top = Make_Recorded(WS_POPUP, nullptr, 1);
        EXPECT_EQ(top == nullptr, FailingAllocation::Failed());
        if (!top) return;
        const bool is_set = SetWindowTextA(top, "another") != FALSE;
        EXPECT_NE(is_set, FailingAllocation::Failed());
        char text[8];
        GetWindowTextA(top, text, 8);
        EXPECT_STREQ(text, is_set ? "another" : "text");
        DestroyWindow(top);
    });
}

}  // namespace
