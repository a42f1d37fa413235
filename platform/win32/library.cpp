#include "library.h"

#include <dlfcn.h>
#include <link.h>
#include <strings.h>

#include <atomic>
#include <cstring>
#include <mutex>
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

bool Free_DbgHelp() noexcept {
    int loads = g_Loads;
    while (loads > 0 && !g_Loads.compare_exchange_weak(loads, loads - 1)) {
    }
    return loads > 0;
}

std::mutex g_Mutex;  // orders the uses of rv::Module::library

// The module with the resources of a library; null when it has none.
HMODULE Module_Of(void* library) noexcept {
    const link_map* map = nullptr;
    HMODULE module = nullptr;
    if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0 ||
        !GetModuleHandleExA(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            reinterpret_cast<LPCSTR>(map->l_ld), &module))
        return nullptr;
    const std::lock_guard lock(g_Mutex);
    module->library = library;
    return module;
}

bool Free_Shared_Library(HMODULE module) noexcept {
    void* library;
    {
        const std::lock_guard lock(g_Mutex);
        library = module ? module->library : nullptr;
    }
    return library && dlclose(library) == 0;
}

}  // namespace

HMODULE LoadLibraryA(LPCSTR name) noexcept {
    if (Is_DbgHelp(name)) {
        ++g_Loads;
        return &g_DbgHelp;
    }
    rv::HeapText native;
    const DWORD error = rv::Native_Path(name, native);
    void* const library =
        error == ERROR_SUCCESS ? dlopen(native.get(), RTLD_NOW | RTLD_LOCAL) : nullptr;
    HMODULE const module = library ? Module_Of(library) : nullptr;
    if (library && !module) dlclose(library);
    if (!module) SetLastError(error == ERROR_SUCCESS ? ERROR_MOD_NOT_FOUND : error);
    return module;
}

BOOL FreeLibrary(HMODULE module) noexcept {
    const bool done = module == &g_DbgHelp ? Free_DbgHelp() : Free_Shared_Library(module);
    if (!done) SetLastError(ERROR_INVALID_HANDLE);
    return done;
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
