// The button, the label, the colour cell and the list box.
#include <RVUtils/CDC.h>
#include <RVUtils/RVButton.h>
#include <RVUtils/RVColorCellCtrl.h>
#include <RVUtils/RVListBox.h>
#include <RVUtils/RVStatic.h>
#include <gtest/gtest.h>

#include <string>

#include "dialog.h"

namespace {

using namespace rv_test;

constexpr COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), kGreen = RGB(0, 255, 0);

TEST(Button, GivesUpTheDefaultLook) {
    RVButton no_window;
    no_window.Enable_Button(1);
    no_window.Enable_Button_And_Show(0);
    no_window.Set_Default_Button(0);

    Dialog dialog;
    constexpr struct {
        const char* why;
        void (*operation)(RVButton&);
        DWORD style;
        bool visible, enabled, looks_default;
    } kRows[] = {
        {"enabled", [](RVButton& b) { b.Enable_Button(1); }, WS_VISIBLE | WS_DISABLED, 1, 1, 1},
        {"disabled", [](RVButton& b) { b.Enable_Button(0); }, WS_VISIBLE, 1, 0, 0},
        {"disabled when hidden", [](RVButton& b) { b.Enable_Button(0); }, 0, 0, 0, 0},
        {"shown", [](RVButton& b) { b.Enable_Button_And_Show(2); }, WS_DISABLED, 1, 1, 1},
        {"hidden", [](RVButton& b) { b.Enable_Button_And_Show(0); }, WS_VISIBLE, 0, 0, 0},
        {"made plain", [](RVButton& b) { b.Set_Default_Button(0); }, WS_VISIBLE, 1, 1, 0},
        {"made default", [](RVButton& b) { b.Set_Default_Button(1); }, WS_VISIBLE, 1, 1, 1},
    };
    for (const auto& row : kRows) {
        RVButton button;
        ASSERT_TRUE(button.Create("", BS_DEFPUSHBUTTON | row.style, kControlPlace, &dialog, 1));
        row.operation(button);
        EXPECT_EQ(IsWindowVisible(button.m_hWnd) != FALSE, row.visible) << row.why;
        EXPECT_EQ(IsWindowEnabled(button.m_hWnd) != FALSE, row.enabled) << row.why;
        EXPECT_EQ((Style_Of(button.m_hWnd) & 0xF) == BS_DEFPUSHBUTTON, row.looks_default)
            << row.why;
        button.Set_Default_Button(0);
        button.Set_Default_Button(1);
        EXPECT_EQ(Style_Of(button.m_hWnd) & 0xF, DWORD{BS_PUSHBUTTON}) << "is never given back";
        button.DestroyWindow();
        row.operation(button);
    }
}

// What the window shows at a place, after it is painted.
COLORREF Pixel(CWnd& window, int x, int y) {
    UpdateWindow(window.m_hWnd);
    return GetPixel(CClientDC(&window).m_hDC, x, y);
}

TEST(Static, AnswersItsParentsQuestionForColours) {
    RVStatic label;
    label.Set_Text_Color(0);
    Dialog dialog;
    ASSERT_TRUE(label.Create("", WS_VISIBLE, kControlPlace, &dialog));
    const auto expect = [&](COLORREF text, COLORREF background) {
        const CClientDC device(&label);
        EXPECT_NE(Send(dialog.m_hWnd, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(device.m_hDC),
                       reinterpret_cast<LPARAM>(label.m_hWnd)),
                  0);
        EXPECT_EQ(GetTextColor(device.m_hDC), text);
        EXPECT_EQ(GetBkColor(device.m_hDC), background);
        EXPECT_EQ(Pixel(label, 50, 15), background);
    };
    expect(0, GetSysColor(COLOR_BTNFACE));
    label.Set_Text_Color(kRed);
    for (const COLORREF background : {kGreen, kBlue})
        label.Set_Background_Color(background);
    expect(kRed, kBlue);
    RECT stale;
    label.Set_Text_Color(kGreen);
    EXPECT_TRUE(GetUpdateRect(label.m_hWnd, &stale, FALSE));
    label.DestroyWindow();
    label.Set_Background_Color(kRed);
}

TEST(ColorCell, PaintsItsColourAndAnEtchedEdge) {
    EXPECT_EQ(RVColorCellCtrl().Get_Color(), 0U);
    Dialog dialog;
    RVColorCellCtrl cell(kRed);
    cell.Set_Color(kRed);
    ASSERT_TRUE(cell.Create("", BS_OWNERDRAW | WS_VISIBLE, kControlPlace, &dialog, 1));
    EXPECT_EQ(Pixel(cell, 50, 15), kRed);
    EXPECT_EQ(Pixel(cell, 0, 15), GetSysColor(COLOR_BTNSHADOW));
    EXPECT_EQ(Pixel(cell, 1, 15), GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_EQ(Pixel(cell, 2, 15), kRed);
    cell.Set_Color(kBlue);
    EXPECT_EQ(Pixel(cell, 50, 15), kBlue);
    EnableWindow(cell.m_hWnd, FALSE);
    UpdateWindow(cell.m_hWnd);
    cell.Set_Color(kGreen);
    EXPECT_EQ(cell.Get_Color(), kGreen);
    EXPECT_FALSE(GetUpdateRect(cell.m_hWnd, nullptr, FALSE));
    EXPECT_EQ(Pixel(cell, 50, 15), kBlue);
    EnableWindow(cell.m_hWnd, TRUE);
    InvalidateRect(cell.m_hWnd, nullptr, TRUE);
    EXPECT_EQ(Pixel(cell, 50, 15), kGreen);
    SetFocus(cell.m_hWnd);
    SetFocus(dialog.m_hWnd);
    EXPECT_EQ(Pixel(cell, 50, 15), kGreen);
}

TEST(ListBox, ScrollsAsFarAsItsWidestString) {
    RVListBox list;
    CString text("one");
    EXPECT_EQ(list.AddString("one"), LB_ERR);
    EXPECT_EQ(list.InsertString(0, "one"), LB_ERR);
    EXPECT_TRUE(list.Validate_Text(text, 0));
    Dialog dialog;
    ASSERT_TRUE(list.Create(WS_VISIBLE | WS_HSCROLL, kControlPlace, &dialog, 1));
    const auto range = [&] { return Send(list.m_hWnd, LB_GETHORIZONTALEXTENT); };
    const auto width_of = [&](const std::string& row) {
        SIZE size = {};
        GetTextExtentPoint32A(CClientDC(&list).m_hDC, row.data(), static_cast<int>(row.size()),
                              &size);
        return size.cx;
    };
    const std::string wide(300, 'w'), wider(400, 'w');
    EXPECT_EQ(list.AddString(nullptr), 0);
    EXPECT_EQ(range(), 0);
    EXPECT_EQ(list.AddString(wide.c_str()), 1);
    EXPECT_EQ(range(), width_of(wide));
    EXPECT_EQ(list.InsertString(0, "narrow"), 0);
    EXPECT_EQ(range(), width_of(wide));
    EXPECT_EQ(list.InsertString(9, wider.c_str()), LB_ERR);
    EXPECT_EQ(range(), width_of(wider)) << "where the row is refused, too";
    Send(list.m_hWnd, LB_RESETCONTENT);
    EXPECT_EQ(range(), width_of(wider));
}

TEST(ListBox, FindsDuplicatesInAnyCase) {
    Dialog dialog;
    RVListBox list;
    ASSERT_TRUE(list.Create(0, kControlPlace, &dialog, 1));
    constexpr ULONG kNoRow = 0xFFFFFFFF;
    CString one("one");
    EXPECT_TRUE(list.Validate_Text(one, kNoRow));
    for (const char* const row : {"one", "two", "TWO", "", "a longer text than fits into a string"})
        list.AddString(row);
    const struct {
        const char* text;
        ULONG own_row;
        bool valid;
    } kRows[] = {
        {"One", kNoRow, false},
        {"One", 0, true},
        {"One", 1, false},
        {"on", kNoRow, true},
        {"two", 1, false},
        {"two", kNoRow, false},
        {"", kNoRow, false},
        {"", 3, true},
        {"A LONGER TEXT THAN FITS INTO A STRING", kNoRow, false},
    };
    for (const auto& row : kRows) {
        CString text(row.text);
        EXPECT_EQ(list.Validate_Text(text, row.own_row), row.valid) << row.text << row.own_row;
        EXPECT_STREQ(text, row.text);
    }
    list.DestroyWindow();
    EXPECT_TRUE(list.Validate_Text(one, kNoRow));
}

}  // namespace
