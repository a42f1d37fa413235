#include "message_box.h"

#include <atomic>
#include <cstdio>

namespace {

constexpr int kOkButton = 1;

std::atomic<rv::MessageBoxHook> g_Hook = nullptr;

}  // namespace

rv::MessageBoxHook rv::Set_Message_Box_Hook(MessageBoxHook hook) noexcept {
    return g_Hook.exchange(hook);
}

int MessageBoxA(HWND, LPCSTR text, LPCSTR title, UINT kind) noexcept {
    if (const rv::MessageBoxHook hook = g_Hook.load())
        hook(text, title, kind);
    else
        std::fprintf(stderr, "%s: %s\n", title, text);
    return kOkButton;
}
