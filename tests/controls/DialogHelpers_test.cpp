#include <RVUtils/DialogHelpers.h>
#include <gtest/gtest.h>

#include <string>

#include "dialog.h"

namespace {

using namespace rv_test;

TEST(TabData, IsZeroWhereThereIsNoTab) {
    const Dialog dialog;
    const INITCOMMONCONTROLSEX families = {sizeof families, ICC_TAB_CLASSES};
    ASSERT_TRUE(InitCommonControlsEx(&families));
    HWND const tabs = Make_Control(dialog.m_hWnd, "SysTabControl32", 0);
    char text[] = "tab";
    for (const LPARAM data : {LPARAM{7}, LPARAM{-3}}) {
        TCITEMA item = {};
        item.mask = TCIF_PARAM | TCIF_TEXT;
        item.pszText = text;
        item.lParam = data;
        Send(tabs, TCM_INSERTITEMA, 1000, reinterpret_cast<LPARAM>(&item));
    }
    const LONG expected[] = {0, 7, -3, 0};
    for (int index = -1; index < 3; ++index)
        EXPECT_EQ(pGet_Tab_Ctrl_Data(tabs, index), expected[index + 1]) << index;
    EXPECT_EQ(pGet_Tab_Ctrl_Data(nullptr, 0), 0);
    EXPECT_EQ(pGet_Tab_Ctrl_Data(dialog.m_hWnd, 0), 0);
}

TEST(PushButton, IsPlainOrDefault) {
    const Dialog dialog;
    constexpr DWORD kOthers[] = {BS_CHECKBOX, BS_AUTOCHECKBOX,    BS_RADIOBUTTON,
                                 BS_GROUPBOX, BS_AUTORADIOBUTTON, BS_OWNERDRAW};
    for (const DWORD type : kOthers)
        EXPECT_FALSE(pIs_Push_Button(Make_Control(dialog.m_hWnd, "Button", type))) << type;
    for (const DWORD type : {DWORD{BS_PUSHBUTTON}, DWORD{BS_DEFPUSHBUTTON}})
        EXPECT_TRUE(pIs_Push_Button(Make_Control(dialog.m_hWnd, "Button", type))) << type;
    EXPECT_FALSE(pIs_Push_Button(Make_Control(dialog.m_hWnd, "Static", 0)));
    EXPECT_FALSE(pIs_Push_Button(dialog.m_hWnd));
    EXPECT_FALSE(pIs_Push_Button(nullptr));
}

// A dialog with a panel of its own, which knows no default button, and a frame that is no dialog.
class FocusDialog : public Dialog {
public:
    FocusDialog() {
        m_Panel = Make_Control(m_hWnd, "#32770", 0);
        m_Frame = Make_Control(m_hWnd, "Static", 0);
        for (const char name : std::string("AODC"))
            Add(name, m_hWnd);
        for (const char name : std::string("abo"))
            Add(name, m_Panel);
        for (const char name : std::string("xy"))
            Add(name, m_Frame);
        Send(m_hWnd, DM_SETDEFID, 'O');
    }

    // Lower case: in the panel or the frame. 'A', 'a', 'x': edit controls; 'C': a check box; the
    // others: push buttons.
    HWND Find(char name) const {
        for (HWND const parent : {m_hWnd, m_Panel, m_Frame})
            if (HWND const found = GetDlgItem(parent, name)) return found;
        return nullptr;
    }

    // The buttons that look the default.
    std::string Defaults() const {
        std::string names;
        for (const char name : std::string("ODCboy"))
            if ((Style_Of(Find(name)) & 0xF) == BS_DEFPUSHBUTTON) names += name;
        return names;
    }
    void Set_Defaults(const std::string& names) {
        for (const char name : std::string("ODboy")) {
            const DWORD look = names.find(name) == names.npos ? 0 : BS_DEFPUSHBUTTON;
            Send(Find(name), BM_SETSTYLE, look, FALSE);
        }
    }

    HWND m_Panel, m_Frame;

private:
    static void Add(char name, HWND parent) {
        if (std::string("Aax").find(name) != std::string::npos)
            Make_Control(parent, "Edit", 0, name);
        else
            Make_Control(parent, "Button", name == 'C' ? BS_AUTOCHECKBOX : BS_PUSHBUTTON, name);
    }
};

TEST(DialogFocus, MovesTheDefaultLook) {
    constexpr struct {
        const char* why;
        char focused;
        const char* defaults;
        char disabled;  // or hidden, where it is '-' and the target
        char target;
        bool gets_it;
        const char* defaults_after;
        char default_id = 'O';
    } kRows[] = {
        {"a disabled control", 'D', "D", 'A', 'A', false, "D"},
        {"a disabled button", 'A', "O", 'D', 'D', false, "O"},
        {"from a button to an edit control", 'D', "D", 0, 'A', true, "O"},
        {"the default button is disabled", 'D', "D", 'O', 'A', true, ""},
        {"and looked the default", 'A', "O", 'O', 'C', true, ""},
        {"from a check box to an edit control", 'C', "D", 0, 'A', true, "OD"},
        {"from nowhere to a button", 0, "O", 0, 'D', true, "D"},
        {"from an edit control to a button", 'A', "O", 0, 'D', true, "D"},
        {"from a button to a button", 'D', "OD", 0, 'b', true, "b"},
        {"to the default button itself", 'D', "D", 0, 'O', true, "O"},
        {"which looked so already", 'A', "O", 0, 'O', true, "O"},
        {"and has the focus", 'O', "O", 0, 'O', true, "O"},
        {"to a check box", 'D', "D", 0, 'C', true, "O"},
        {"from the default button to an edit control", 'O', "O", 0, 'A', true, "O"},
        {"in a panel: the dialog's button, found above", 'D', "D", 0, 'a', true, "O"},
        {"in a panel: a button", 'A', "O", 0, 'b', true, "b"},
        {"in a panel with a button of the id", 'D', "D", 0, 'a', true, "o", 'o'},
        {"in a frame: there is no default button", 'D', "DO", 0, 'x', true, "O"},
        {"in a frame: a button", 'D', "DO", 0, 'y', true, "Oy"},
        {"the default is no push button", 'D', "D", 0, 'A', true, "", 'C'},
        {"the default does not exist", 'D', "DO", 0, 'A', true, "O", 'Z'},
    };
    for (const auto& row : kRows) {
        FocusDialog dialog;
        for (HWND const asked : {dialog.m_hWnd, dialog.m_Panel})
            Send(asked, DM_SETDEFID, static_cast<WPARAM>(row.default_id));
        SetFocus(row.focused ? dialog.Find(row.focused) : nullptr);
        dialog.Set_Defaults(row.defaults);
        if (row.disabled) EnableWindow(dialog.Find(row.disabled), FALSE);
        HWND const before = GetFocus(), target = dialog.Find(row.target);
        EXPECT_EQ(pSet_Dialog_Focus(target), row.gets_it) << row.why;
        EXPECT_EQ(GetFocus(), row.gets_it ? target : before) << row.why;
        EXPECT_EQ(dialog.Defaults(), row.defaults_after) << row.why;
        EXPECT_EQ(LOWORD(Send(dialog.m_hWnd, DM_GETDEFID)), row.default_id) << row.why;
    }
    EXPECT_FALSE(pSet_Dialog_Focus(nullptr));
}

}  // namespace
