// Windows at the top, as every process sees them.
#include <RVUtils/CWnd.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

constexpr char kClassName[] = "RVUtilsTopLevelTest";
constexpr RECT kPlace = {10, 10, 210, 110};

struct TopWindow : CWnd {
    explicit TopWindow(DWORD style, CWnd* owner = nullptr) {
        static const ATOM s_Class = [] {
            WNDCLASSA window_class = {};
            window_class.lpfnWndProc = &DefWindowProcA;
            window_class.lpszClassName = kClassName;
            return RegisterClassA(&window_class);
        }();
        EXPECT_NE(s_Class, 0);
        EXPECT_TRUE(CreateEx(0, kClassName, "", WS_POPUP | style, kPlace, owner, 0));
    }
};

TEST(TopLevelWindow, IsFoundByItsClassAlone) {
    EXPECT_EQ(FindWindowA(kClassName, nullptr), nullptr);
    for (const DWORD style : {DWORD{0}, DWORD{WS_VISIBLE}}) {
        const TopWindow window(style);
        for (const char* name : {kClassName, "RVUTILSTOPLEVELTEST", "rvutilstopleveltest"})
            EXPECT_EQ(FindWindowA(name, nullptr), window.m_hWnd) << name;
        for (const char* name : {"", "RVUtilsTopLevelTes", "RVUtilsTopLevelTest2"})
            EXPECT_EQ(FindWindowA(name, nullptr), nullptr) << name;
        std::thread([&] {
            EXPECT_TRUE(IsWindow(window.m_hWnd));
            EXPECT_EQ(FindWindowA(kClassName, nullptr), window.m_hWnd);
        }).join();
    }
    EXPECT_EQ(FindWindowA(kClassName, nullptr), nullptr);
}

TEST(TopLevelWindow, ClassIsRegisteredOnceUnderAName) {
    const TopWindow registered(0);
    const std::string longest(255, 'l'), too_long(256, 'l');
    const struct {
        const char* why;
        const char* name;
        bool taken;
    } kRows[] = {
        {"another case", "rvutilsTOPLEVELTEST", false},
        {"empty", "", false},
        {"no name", nullptr, false},
        {"255 characters", longest.c_str(), true},
        {"256 characters", too_long.c_str(), false},
    };
    for (const auto& row : kRows) {
        WNDCLASSA window_class = {};
        window_class.lpfnWndProc = &DefWindowProcA;
        window_class.lpszClassName = row.name;
        EXPECT_EQ(RegisterClassA(&window_class) != 0, row.taken) << row.why;
    }
    CWnd window;
    EXPECT_TRUE(window.CreateEx(0, longest.c_str(), "", WS_POPUP, kPlace, nullptr, 0));
    EXPECT_EQ(FindWindowA(longest.c_str(), nullptr), window.m_hWnd);
}

TEST(TopLevelWindow, IsHiddenShownMinimisedAndRestored) {
    const TopWindow window(0);
    const struct {
        const char* why;
        int command;
        bool was_visible, visible, iconic;
    } kRows[] = {
        {"minimised when hidden", SW_MINIMIZE, false, true, true},
        {"shown as it is", SW_SHOW, true, true, true},
        {"restored", SW_RESTORE, true, true, false},
        {"restored again", SW_RESTORE, true, true, false},
        {"minimised", SW_MINIMIZE, true, true, true},
        {"hidden", SW_HIDE, true, false, true},
        {"shown normally", SW_SHOWNORMAL, false, true, false},
        {"hidden again", SW_HIDE, true, false, false},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(ShowWindow(window.m_hWnd, row.command) != FALSE, row.was_visible) << row.why;
        EXPECT_EQ(IsWindowVisible(window.m_hWnd) != FALSE, row.visible) << row.why;
        EXPECT_EQ(IsIconic(window.m_hWnd) != FALSE, row.iconic) << row.why;
    }
}

TEST(TopLevelWindow, RemembersWhatWasActiveLast) {
    TopWindow main(WS_VISIBLE);
    EXPECT_EQ(GetLastActivePopup(main.m_hWnd), main.m_hWnd);
    TopWindow dialog(0, &main);
    EXPECT_EQ(GetLastActivePopup(main.m_hWnd), main.m_hWnd) << "one that was never shown";
    ShowWindow(dialog.m_hWnd, SW_SHOW);
    EXPECT_EQ(GetLastActivePopup(main.m_hWnd), dialog.m_hWnd);
    EXPECT_EQ(GetForegroundWindow(), dialog.m_hWnd);
    {
        const TopWindow inner(WS_VISIBLE, &dialog);
        EXPECT_EQ(GetLastActivePopup(main.m_hWnd), inner.m_hWnd);
#if !defined(_WIN32)  // Wine looks below owned windows, too
        EXPECT_EQ(GetLastActivePopup(dialog.m_hWnd), dialog.m_hWnd);
#endif
    }
    const TopWindow other(WS_VISIBLE);
    EXPECT_EQ(GetForegroundWindow(), other.m_hWnd);
    EXPECT_TRUE(SetForegroundWindow(dialog.m_hWnd));
    EXPECT_EQ(GetForegroundWindow(), dialog.m_hWnd);
    EXPECT_EQ(GetLastActivePopup(main.m_hWnd), dialog.m_hWnd);
    EXPECT_TRUE(SetForegroundWindow(main.m_hWnd));
    EXPECT_EQ(GetLastActivePopup(main.m_hWnd), main.m_hWnd);
    EXPECT_EQ(GetLastActivePopup(other.m_hWnd), other.m_hWnd);
}

TEST(TopLevelWindow, IsNoneAfterItsEnd) {
    HWND const ended = TopWindow(WS_VISIBLE).m_hWnd;
    EXPECT_FALSE(IsWindow(ended) || IsWindowVisible(ended) || IsIconic(ended));
    EXPECT_FALSE(ShowWindow(ended, SW_SHOW) || SetForegroundWindow(ended));
}

}  // namespace
