// An application with windows, which ends when it is told to.
//
// usage: tests_application MAIN-CLASS DIALOG-CLASS STATE
// STATE: "d" opens a dialog, "m" minimises the main window. Writes a byte when all is open, and
// ends at the first byte that it reads.
#include <RVUtils/CWnd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

namespace {

constexpr RECT kPlace = {10, 10, 310, 210};

void Open(CWnd& window, const char* class_name, CWnd* owner) {
    WNDCLASSA window_class = {};
    window_class.lpfnWndProc = &DefWindowProcA;
    window_class.lpszClassName = class_name;
    RegisterClassA(&window_class);
    window.CreateEx(0, class_name, "", WS_POPUP | WS_VISIBLE, kPlace, owner, 0);
}

// Answers what other processes ask of the windows.
void Serve_Windows() {
#if defined(_WIN32)
    for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
        DispatchMessageA(&message);
#endif
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 4) return 2;
    std::atomic<bool> ended = false;
    CWnd main_window, dialog;
    Open(main_window, arguments[1], nullptr);
    if (std::strchr(arguments[3], 'd')) Open(dialog, arguments[2], &main_window);
    if (std::strchr(arguments[3], 'm')) ShowWindow(main_window.m_hWnd, SW_MINIMIZE);
    std::thread reader([&ended] {
        std::putchar('r');
        std::fflush(stdout);
        std::getchar();
        ended = true;
    });
    while (!ended)
        Serve_Windows();
    reader.join();
    return 0;
}
