#include "../system.h"

#include <RVUtils/winapi.h>

#include <atomic>

namespace attachments {
namespace {

std::atomic<bool> g_Stop_Asked = false;

BOOL WINAPI Note_Stop(DWORD) {
    // The second time the system does what it would have done.
    return !g_Stop_Asked.exchange(true);
}

}  // namespace

bool Is_Watched() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != FALSE;
}

bool Set_Temporary_Folder(const std::string& folder) {
    return SetEnvironmentVariableA("TMP", folder.c_str()) != FALSE;
}

void Take_Signals() {
    SetConsoleCtrlHandler(Note_Stop, TRUE);
}

bool Stop_Is_Asked() noexcept {
    return g_Stop_Asked;
}

}  // namespace attachments
