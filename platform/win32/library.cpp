#include "library.h"

#include <strings.h>

#include <atomic>
#include <cstring>
#include <string_view>

#include "directory.h"
#include "error.h"
#include "native_path.h"

namespace {

rv::Module g_DbgHelp;
std::atomic<int> g_Loads = 0;

bool Is_DbgHelp(const char* name) noexcept {
    return strcasecmp(name, "dbghelp.dll") == 0 || strcasecmp(name, "dbghelp") == 0;
}

BOOL Make_Sure_Directory_Path_Exists(const char* path) noexcept {
    rv::HeapText native;
    DWORD error = rv::Native_Path(path, native);
    char* const closing = error == ERROR_SUCCESS ? std::strrchr(native.get(), '/') : nullptr;
    if (closing && closing != native.get()) {
        *closing = '\0';
        error = rv::Make_Directories(native.get());
    }
    if (error == ERROR_SUCCESS || error == ERROR_ALREADY_EXISTS) return TRUE;
    SetLastError(error);
    return FALSE;
}

}  // namespace

HMODULE LoadLibraryA(LPCSTR name) noexcept {
    if (Is_DbgHelp(name)) {
        ++g_Loads;
        return &g_DbgHelp;
    }
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

BOOL FreeLibrary(HMODULE module) noexcept {
    int loads = module == &g_DbgHelp ? g_Loads.load() : 0;
    while (loads > 0 && !g_Loads.compare_exchange_weak(loads, loads - 1)) {
    }
    if (loads == 0) SetLastError(ERROR_INVALID_HANDLE);
    return loads != 0;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) noexcept {
    if (module == &g_DbgHelp && name == std::string_view("MakeSureDirectoryPathExists"))
        return reinterpret_cast<FARPROC>(
            reinterpret_cast<void (*)()>(&Make_Sure_Directory_Path_Exists));
    SetLastError(ERROR_PROC_NOT_FOUND);
    return nullptr;
}

HMODULE rv::Loaded_Library(LPCSTR name) noexcept {
    return Is_DbgHelp(name) && g_Loads > 0 ? &g_DbgHelp : nullptr;
}
