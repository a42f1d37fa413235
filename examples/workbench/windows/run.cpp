// The window serves its user until it is closed.
#include "../run.h"

int workbench::Run(const Window& window, const std::vector<std::string>&) {
    MSG message;
    while (IsWindow(window.m_hWnd) && GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (IsDialogMessageA(window.m_hWnd, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return 0;
}
