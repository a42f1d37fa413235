// String resources out of sorted tables.
#include "module.h"

#include <algorithm>
#include <atomic>

#include "error.h"

namespace {

rv::StringTable g_NoStrings = {nullptr, 0};
std::atomic<rv::StringTable*> g_Application = &g_NoStrings;

const rv::StringResource* Find(const rv::StringTable& table, UINT id) noexcept {
    const rv::StringResource* const end = table.entries + table.count;
    const auto* const found = std::lower_bound(
        table.entries, end, id,
        [](const rv::StringResource& entry, UINT sought) { return entry.id < sought; });
    return found != end && found->id == id ? found : nullptr;
}

}  // namespace

void rv::Register_Application_Strings(StringTable& table) noexcept {
    g_Application.store(&table, std::memory_order_release);
}

HMODULE GetModuleHandleA(LPCSTR name) noexcept {
    if (!name) return g_Application.load(std::memory_order_acquire);
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int room) noexcept {
    if (!buffer || room <= 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const rv::StringResource* const found = Find(module ? *module : *GetModuleHandleA(nullptr), id);
    if (!found) SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    const std::string_view text = found ? found->text : std::string_view();
    const std::size_t count = text.copy(buffer, static_cast<std::size_t>(room) - 1);
    buffer[count] = '\0';
    return static_cast<int>(count);
}
