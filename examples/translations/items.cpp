#include "items.h"

HINSTANCE Items_Module() {
    HMODULE module = nullptr;
    const BOOL found = GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCSTR>(&Items_Module), &module);
    return found ? module : nullptr;
}
