// What the controls of the tests stand in.
#pragma once

#include <RVUtils/CWnd.h>
#include <gtest/gtest.h>

namespace rv_test {

inline constexpr RECT kDialogPlace = {0, 0, 400, 300};
inline constexpr RECT kControlPlace = {10, 10, 110, 40};

// A dialog on the screen.
struct Dialog : CWnd {
    Dialog() {
        EXPECT_TRUE(
            CreateEx(0, "#32770", "Dialog", WS_POPUP | WS_VISIBLE, kDialogPlace, nullptr, 0));
    }
};

// A control of the system's, in a dialog or a panel; ends with it.
inline HWND Make_Control(HWND parent, const char* class_name, DWORD style, int id = 0) {
    HWND const window =
        CreateWindowExA(0, class_name, "", WS_CHILD | WS_VISIBLE | style, 10, 10, 100, 30, parent,
                        reinterpret_cast<HMENU>(INT_PTR{id}), nullptr, nullptr);
    EXPECT_NE(window, nullptr) << class_name;
    return window;
}

inline DWORD Style_Of(HWND window) {
    return static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE));
}

inline LRESULT Send(HWND window, UINT message, WPARAM first = 0, LPARAM second = 0) {
    return SendMessageA(window, message, first, second);
}

}  // namespace rv_test
