// Buttons, dialogs and edit controls: what a user does to them, and what their parent hears.
#include "recorded_window.h"

namespace {

using namespace rv_test;

constexpr DWORD kChild = WS_CHILD | WS_VISIBLE;

void Click(HWND window, int x, int release_x) {
    SendMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 5));
    SendMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(release_x, 5));
}

TEST(Button, TellsAClickAndChangesItsCheck) {
    const struct {
        const char* why;
        DWORD type;
        bool checks;
    } kRows[] = {
        {"push button", BS_PUSHBUTTON, false},
        {"default button", BS_DEFPUSHBUTTON, false},
        {"check box", BS_CHECKBOX, false},
        {"automatic check box", BS_AUTOCHECKBOX, true},
        {"automatic radio button", BS_AUTORADIOBUTTON, true},
    };
    for (const auto& row : kRows) {
        const RecordedTop top;
        HWND const button = Make_Window("Button", kChild | row.type, top, 7);
        Take_Record();
        SendMessageA(button, BM_CLICK, 0, 0);
        EXPECT_EQ(Take_Record(), "1:unfocus 1:command7/0") << row.why;
        EXPECT_EQ(GetFocus(), button) << row.why;
        EXPECT_EQ(SendMessageA(button, BM_GETCHECK, 0, 0), row.checks) << row.why;
        Click(button, 5, 500);
        EXPECT_EQ(Take_Record(), "") << row.why << ", released elsewhere";
        Click(button, 5, 6);
        SendMessageA(button, WM_KEYDOWN, VK_SPACE, 0);
        SendMessageA(button, WM_KEYUP, VK_SPACE, 0);
        EXPECT_EQ(Take_Record(), "1:command7/0 1:command7/0") << row.why;
    }
}

TEST(Button, OfARowOfRadioButtonsOneIsChecked) {
    const RecordedTop top;
    HWND buttons[3];
    for (HWND& button : buttons)
        button = Make_Window("Button", kChild | BS_AUTORADIOBUTTON, top, 7);
    for (HWND const chosen : buttons) {
        SendMessageA(chosen, BM_CLICK, 0, 0);
        for (HWND const button : buttons)
            EXPECT_EQ(SendMessageA(button, BM_GETCHECK, 0, 0), button == chosen);
    }
}

TEST(Button, ChangesItsTypeAlone) {
    const RecordedTop top;
    HWND const button = Make_Window("Button", kChild | BS_DEFPUSHBUTTON, top, 7);
    const auto style = [button] { return static_cast<DWORD>(GetWindowLongA(button, GWL_STYLE)); };
    SendMessageA(button, BM_SETSTYLE, 0x2000 | BS_AUTOCHECKBOX, TRUE);
    EXPECT_EQ(style(), kChild | BS_AUTOCHECKBOX);
    SendMessageA(button, BM_SETSTYLE, BS_PUSHBUTTON, FALSE);
    EXPECT_EQ(style(), kChild | BS_PUSHBUTTON);
}

TEST(Dialog, MovesTheDefaultLookWithItsDefaultId) {
    const RecordedTop top;
    HWND const dialog = Make_Window("#32770", kChild, top, 1);
    HWND const buttons[] = {Make_Window("Button", kChild | BS_DEFPUSHBUTTON, dialog, 21),
                            Make_Window("Button", kChild, dialog, 22)};
    const struct {
        const char* why;
        int id;  // 0: none is set
        LRESULT answer;
        int looks_default;  // an index; -1: none
    } kRows[] = {
        {"from the start", 0, MAKELONG(IDOK, DC_HASDEFID), 0},
        {"another button", 22, MAKELONG(22, DC_HASDEFID), 1},
        {"no button's", 99, MAKELONG(99, DC_HASDEFID), -1},
        {"and back", 21, MAKELONG(21, DC_HASDEFID), 0},
    };
    for (const auto& row : kRows) {
        if (row.id != 0) {
            EXPECT_TRUE(SendMessageA(dialog, DM_SETDEFID, static_cast<WPARAM>(row.id), 0))
                << row.why;
        }
        EXPECT_EQ(SendMessageA(dialog, DM_GETDEFID, 0, 0), row.answer) << row.why;
        for (const int index : {0, 1}) {
            const LONG type = GetWindowLongA(buttons[index], GWL_STYLE) & 0xF;
            EXPECT_EQ(type, index == row.looks_default ? LONG{BS_DEFPUSHBUTTON} : LONG{0})
                << row.why;
        }
    }
}

TEST(Edit, TakesCharactersAndTellsEachChange) {
    const RecordedTop top;
    HWND const edit = Make_Window("Edit", kChild, top, 9);
    Take_Record();
    const char kChanged[] = "1:command9/1024 1:command9/768";
    const struct {
        WPARAM character;
        const char* text;
        const char* record;
    } kRows[] = {
        {'a', "atext", kChanged},    {'b', "abtext", kChanged}, {VK_BACK, "atext", kChanged},
        {VK_BACK, "text", kChanged}, {VK_BACK, "text", ""},
    };
    for (const auto& row : kRows) {
        SendMessageA(edit, WM_CHAR, row.character, 0);
        char text[16];
        GetWindowTextA(edit, text, 16);
        EXPECT_STREQ(text, row.text);
        EXPECT_EQ(Take_Record(), row.record) << row.text;
    }
}

}  // namespace
