#include <RVUtils/RVButton.h>
#include <gtest/gtest.h>

#include "dialog.h"

namespace {

using namespace rv_test;

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

}  // namespace
