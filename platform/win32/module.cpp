// Modules, and texts out of their tables.
#include "module.h"

#include <dlfcn.h>
#include <sys/auxv.h>

#include <atomic>
#include <mutex>

#include "error.h"
#include "library.h"
#include "resource_table.h"

namespace {

rv::Module g_Bare;  // of an application without resources
std::atomic<rv::Module*> g_Application = &g_Bare;

std::mutex g_Mutex;
rv::Module* g_Newest = nullptr;

// Where the program or the library begins that an address lies in; null for no code or data.
const void* Base_Of(const void* address) noexcept {
    Dl_info info;
    return dladdr(address, &info) ? info.dli_fbase : nullptr;
}

const void* Base_Of_Program() noexcept {
    return Base_Of(reinterpret_cast<const void*>(getauxval(AT_ENTRY)));
}

}  // namespace

rv::ModuleEntry::ModuleEntry(Module& module) noexcept : m_Module(module) {
    const std::lock_guard lock(g_Mutex);
    module.next = g_Newest;
    g_Newest = &module;
    if (Base_Of(&module) == Base_Of_Program()) g_Application = &module;
}

rv::ModuleEntry::~ModuleEntry() {
    {
        const std::lock_guard lock(g_Mutex);
        Module** at = &g_Newest;
        while (*at != &m_Module)
            at = &(*at)->next;
        *at = m_Module.next;
        Module* mine = &m_Module;
        g_Application.compare_exchange_strong(mine, &g_Bare);
    }
    End_Shared_Icons(m_Module.icons);
    End_Shared_Icons(m_Module.cursors);
}

HMODULE GetModuleHandleA(LPCSTR name) noexcept {
    if (!name) return g_Application.load(std::memory_order_acquire);
    HMODULE const library = rv::Loaded_Library(name);
    if (!library) SetLastError(ERROR_MOD_NOT_FOUND);
    return library;
}

BOOL GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module) noexcept {
    constexpr DWORD kFlags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (flags != kFlags || !module) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const void* const base = Base_Of(address);
    const std::lock_guard lock(g_Mutex);
    *module = g_Newest;
    while (*module && Base_Of(*module) != base)
        *module = (*module)->next;
    if (!*module) SetLastError(ERROR_MOD_NOT_FOUND);
    return *module != nullptr;
}

int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int room) noexcept {
    if (!buffer || room <= 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const rv::Module& from = module ? *module : *GetModuleHandleA(nullptr);
    const auto* const found = rv::Find_Resource(from.strings, id);
    const std::string_view text = found ? found->text : std::string_view();
    const std::size_t count = text.copy(buffer, static_cast<std::size_t>(room) - 1);
    buffer[count] = '\0';
    return static_cast<int>(count);
}
