// Objects of windows, and which of their operations answer what.
#include <RVUtils/CButton.h>
#include <RVUtils/CDC.h>
#include <RVUtils/CException.h>
#include <RVUtils/CWinApp.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

constexpr RECT kPlace = {0, 0, 200, 100};
constexpr UINT kId = 7;
constexpr UINT kFirst = 0x8001, kSecond = 0x8002, kThrow = 0x8003;

std::string g_Calls;

LRESULT Send(HWND window, UINT message, WPARAM first = 0, LPARAM second = 0) {
    return SendMessageA(window, message, first, second);
}

// What a control tells its parent.
LRESULT Send_Notice(const CWnd& parent, HWND control, UINT code) {
    NMHDR notice = {control, kId, code};
    return Send(parent.m_hWnd, WM_NOTIFY, kId, reinterpret_cast<LPARAM>(&notice));
}

class Dialog : public CWnd {
public:
    explicit Dialog(DWORD style = 0) {
        EXPECT_TRUE(CreateEx(0, "#32770", "", WS_POPUP | style, kPlace, nullptr, 0));
    }

protected:
    void On_Click() { g_Calls += "click "; }
    void On_Notice(NMHDR*, LRESULT* result) {
        g_Calls += "notice ";
        *result = 5;
    }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Dialog, CWnd)
ON_BN_CLICKED(kId, &ThisClass::On_Click)
ON_NOTIFY(20, kId, &ThisClass::On_Notice)
ON_NOTIFY(21, kId, &ThisClass::On_Notice)
END_MESSAGE_MAP()

class Base : public CButton {
public:
    void DrawItem(DRAWITEMSTRUCT* item) override {
        g_Calls += "draw" + std::to_string(item->itemID) + " ";
    }

protected:
    LRESULT On_First(WPARAM first, LPARAM second) {
        g_Calls += "base ";
        return static_cast<LRESULT>(first) + second;
    }
    LRESULT On_Second(WPARAM, LPARAM) {
        g_Calls += "second ";
        return 2;
    }
    void OnDestroy() {
        g_Calls += IsWindow(m_hWnd) ? "destroy " : "too late ";
        CButton::OnDestroy();
    }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Base, CButton)
ON_MESSAGE(kFirst, &ThisClass::On_First)
ON_MESSAGE(kSecond, &ThisClass::On_Second)
ON_WM_DESTROY()
END_MESSAGE_MAP()

class Derived : public Base {
protected:
    LRESULT On_Own_First(WPARAM first, LPARAM second) {
        g_Calls += "derived ";
        return 10 * On_First(first, second);
    }
    LRESULT On_Throw(WPARAM kind, LPARAM) {
        if (kind == 1) throw std::string("text");
        AfxThrowMemoryException();
    }
    void On_Own_Notice(NMHDR* notice, LRESULT* result) {
        g_Calls += "reflected ";
        *result = static_cast<LRESULT>(notice->code);
    }
    HBRUSH CtlColor(CDC* device, UINT kind) {
        g_Calls += device->m_hDC ? "color" + std::to_string(kind) + " " : "no context ";
        return m_Brush;
    }

    DECLARE_MESSAGE_MAP()

public:
    HBRUSH m_Brush = nullptr;
};

BEGIN_MESSAGE_MAP(Derived, Base)
ON_MESSAGE(kFirst, &ThisClass::On_Own_First)
ON_MESSAGE(kThrow, &ThisClass::On_Throw)
ON_NOTIFY_REFLECT(21, &ThisClass::On_Own_Notice)
ON_WM_CTLCOLOR_REFLECT()
END_MESSAGE_MAP()

TEST(CWnd, AnswersByItsMapElseByTheWindowsClass) {
    g_Calls.clear();
    Dialog dialog;
    Derived button;
    ASSERT_TRUE(button.Create("text", 0, kPlace, &dialog, kId));
    EXPECT_FALSE(button.Create("again", 0, kPlace, &dialog, kId));
    EXPECT_EQ(Send(button.m_hWnd, kFirst, 3, 4), 70);
    EXPECT_EQ(Send(button.m_hWnd, kSecond), 2);
    char text[8] = {};
    EXPECT_EQ(Send(button.m_hWnd, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text)), 4);
    EXPECT_STREQ(text, "text");
    EXPECT_EQ(std::exchange(g_Calls, ""), "derived base second ");

    EXPECT_EQ(Send_Notice(dialog, button.m_hWnd, 21), 21) << "the control comes first";
    EXPECT_EQ(Send_Notice(dialog, button.m_hWnd, 20), 5);
    EXPECT_EQ(Send_Notice(dialog, button.m_hWnd, 22), 0);
    EXPECT_EQ(Send_Notice(dialog, nullptr, 20), 5);
    EXPECT_EQ(Send(dialog.m_hWnd, WM_NOTIFY), 0);
    Send(button.m_hWnd, BM_CLICK);
    DRAWITEMSTRUCT item = {};
    item.hwndItem = button.m_hWnd;
    item.itemID = 3;
    EXPECT_EQ(Send(dialog.m_hWnd, WM_DRAWITEM, kId, reinterpret_cast<LPARAM>(&item)), TRUE);
    EXPECT_EQ(std::exchange(g_Calls, ""), "reflected notice notice click draw3 ");

    const CClientDC device(&button);
    const auto ask = [&] {
        return Send(dialog.m_hWnd, WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(device.m_hDC),
                    reinterpret_cast<LPARAM>(button.m_hWnd));
    };
    const LRESULT of_parent = ask();
    button.m_Brush = CreateSolidBrush(1);
    EXPECT_NE(of_parent, reinterpret_cast<LRESULT>(button.m_Brush));
    EXPECT_EQ(ask(), reinterpret_cast<LRESULT>(button.m_Brush));
    DeleteObject(button.m_Brush);
    EXPECT_EQ(std::exchange(g_Calls, ""), "color3 color3 ");

    EXPECT_TRUE(dialog.DestroyWindow());
    EXPECT_EQ(button.m_hWnd, nullptr);
    EXPECT_EQ(g_Calls, "destroy ");
    EXPECT_FALSE(button.DestroyWindow() || button.Detach());
}

TEST(CWnd, TakesOverAControlAndGivesItUp) {
    g_Calls.clear();
    Dialog dialog;
    HWND const control = CreateWindowExA(0, "Button", "", WS_CHILD, 0, 0, 10, 10, dialog.m_hWnd,
                                         reinterpret_cast<HMENU>(UINT_PTR{kId}), nullptr, nullptr);
    CWnd* const plain = CWnd::FromHandle(control);
    EXPECT_TRUE(plain && plain->m_hWnd == control && CWnd::FromHandle(control) == plain);
    EXPECT_EQ(CWnd::FromHandlePermanent(control), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    Derived button, other;
    EXPECT_FALSE(button.SubclassDlgItem(kId + 1, &dialog) || button.SubclassDlgItem(kId, nullptr) ||
                 button.SubclassWindow(nullptr) || button.Attach(nullptr));
    ASSERT_TRUE(button.SubclassDlgItem(kId, &dialog));
    EXPECT_FALSE(other.SubclassWindow(control) || other.Attach(control) ||
                 button.SubclassWindow(dialog.m_hWnd));
    EXPECT_EQ(CWnd::FromHandle(control), &button);
    EXPECT_EQ(Send(control, kSecond), 2);
    EXPECT_EQ(button.Detach(), control);
    EXPECT_EQ(Send(control, kSecond), 0);
    ASSERT_TRUE(other.Attach(control)) << "without its messages, but what comes back";
    EXPECT_EQ(Send(control, kSecond), 0);
    EXPECT_EQ(Send_Notice(dialog, control, 21), 21);
    EXPECT_TRUE(other.DestroyWindow());
    EXPECT_FALSE(IsWindow(control));
    for (int i = 0; i < 100; ++i) {
        CWnd window;
        EXPECT_TRUE(window.CreateEx(0, "Static", "", WS_CHILD, kPlace, &dialog, 1));
        HWND const left = window.Detach();
        EXPECT_EQ(CWnd::FromHandle(left)->m_hWnd, left);
        EXPECT_TRUE(DestroyWindow(left));
    }
}

// An application that notes what it would show.
struct Application : CWinApp {
    int DoMessageBox(const char* text, UINT, UINT) override {
        shown += std::string(text) + "|";
        return 1;
    }

    std::string shown;
};

TEST(CWnd, LetsNoExceptionOutOfAnAnswer) {
    Application application;
    Dialog dialog;
    Derived button;
    ASSERT_TRUE(button.Create("", 0, kPlace, &dialog, kId));
    EXPECT_EQ(Send(button.m_hWnd, kThrow, 0), 0);
    EXPECT_EQ(Send(button.m_hWnd, kThrow, 1), 0);
    EXPECT_EQ(application.shown, "Out of memory.|The operation failed.|");
    EXPECT_EQ(Send(button.m_hWnd, kSecond), 2);
}

}  // namespace
