// Windows of a class that writes down what it is told.
#pragma once

#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace rv_test {

// "1:create 1:focus ...": the user data of each window (0 before it has some) and what it got.
inline std::string g_Record;

// What was written down since the last call.
inline std::string Take_Record() {
    if (!g_Record.empty()) g_Record.pop_back();
    return std::exchange(g_Record, {});
}

// What the next windows do when they are told of their making.
inline LRESULT g_BeforeCreate = TRUE;
inline LRESULT g_Create = 0;

inline std::string Told_Notice(const NMHDR* notice) {
    const auto& of_list = *reinterpret_cast<const NMLISTVIEW*>(notice);
    switch (notice->code) {
        case LVN_ITEMCHANGING:
        case LVN_ITEMCHANGED:
            return (notice->code == LVN_ITEMCHANGED ? "changed" : "changing") +
                   std::to_string(of_list.iItem) + "/" + std::to_string(of_list.uOldState) + ">" +
                   std::to_string(of_list.uNewState);
        case LVN_INSERTITEM:
            return "insert" + std::to_string(of_list.iItem);
        case LVN_DELETEITEM:
            return "delete" + std::to_string(of_list.iItem);
        case LVN_DELETEALLITEMS:
            return "delete-all";
        case LVN_COLUMNCLICK:
            return "column" + std::to_string(of_list.iSubItem);
        case HDN_ENDTRACKA:
            return "tracked";
        case TCN_SELCHANGING:
            return "choosing";
        case TCN_SELCHANGE:
            return "chosen";
        default:
            return {};
    }
}

inline std::string Told(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_NCCREATE:
            return "before";
        case WM_CREATE:
            return "create";
        case WM_DESTROY:
            return "destroy";
        case WM_NCDESTROY:
            return "gone";
        case WM_SETFOCUS:
            return "focus";
        case WM_KILLFOCUS:
            return "unfocus";
        case WM_ENABLE:
            return first ? "enable" : "disable";
        case WM_COMMAND:
            return "command" + std::to_string(LOWORD(first)) + "/" + std::to_string(HIWORD(first));
        case WM_NOTIFY:
            return Told_Notice(reinterpret_cast<const NMHDR*>(second));
        default:
            return {};
    }
}

inline LRESULT CALLBACK Record_Message(HWND window, UINT message, WPARAM first, LPARAM second) {
    const std::string told = Told(message, first, second);
    if (!told.empty())
        g_Record += std::to_string(GetWindowLongPtrA(window, GWLP_USERDATA)) + ":" + told + " ";
    if (message == WM_NCCREATE && !g_BeforeCreate) return FALSE;
    if (message == WM_CREATE && g_Create) return g_Create;
    return DefWindowProcA(window, message, first, second);
}

inline constexpr char kRecordedClass[] = "RVUtilsRecordedWindow";

inline HWND Make_Window(const char* class_name, DWORD style, HWND parent, int id = 0,
                        const RECT& place = {0, 0, 200, 100}, DWORD extended_style = 0) {
    return CreateWindowExA(extended_style, class_name, "text", style, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                           GetModuleHandleA(nullptr), nullptr);
}

// A window of the recording class, with the mark by which the record names it.
inline HWND Make_Recorded(DWORD style, HWND parent, int mark) {
    static const ATOM s_Class = [] {
        WNDCLASSA window_class = {};
        window_class.lpfnWndProc = &Record_Message;
        window_class.lpszClassName = kRecordedClass;
        return RegisterClassA(&window_class);
    }();
    EXPECT_NE(s_Class, 0);
    HWND const window = Make_Window(kRecordedClass, style, parent, style & WS_CHILD ? mark : 0);
    if (window) SetWindowLongPtrA(window, GWLP_USERDATA, mark);
    return window;
}

// One at the top, shown, with an empty record, for as long as the object lives.
struct RecordedTop {
    explicit RecordedTop(DWORD style = WS_VISIBLE)
        : window(Make_Recorded(WS_POPUP | style, nullptr, 1)) {
        g_Record.clear();
    }
    RecordedTop(const RecordedTop&) = delete;
    RecordedTop& operator=(const RecordedTop&) = delete;
    ~RecordedTop() { DestroyWindow(window); }

    operator HWND() const { return window; }

    HWND const window;
};

}  // namespace rv_test
