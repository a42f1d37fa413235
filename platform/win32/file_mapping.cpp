#include "file_mapping.h"

#include <sys/mman.h>

#include <mutex>
#include <new>
#include <utility>

#include "error.h"
#include "handle.h"
#include "named_object.h"
#include "nothrow_object.h"

namespace {

using rv::NamedObject;

struct View : rv::NothrowObject {
    void* address;
    NamedObject* object;
    View* next;
};

// All views of this process.
constinit std::mutex g_Mutex;
constinit View* g_Views = nullptr;

// Where the view is linked, or would be. For one thread at a time.
View** Place_Of(LPCVOID address) noexcept {
    View** place = &g_Views;
    while (*place && (*place)->address != address)
        place = &(*place)->next;
    return place;
}

std::nullptr_t Refuse(DWORD error) noexcept {
    SetLastError(error);
    return nullptr;
}

}  // namespace

HANDLE CreateFileMappingA(HANDLE file, SECURITY_ATTRIBUTES* security, DWORD protection,
                          DWORD size_high, DWORD size_low, LPCSTR name) noexcept {
    const ULONGLONG size = ULONGLONG{size_high} << 32 | size_low;
    constexpr ULONGLONG kMost = ULONGLONG{1} << 47;  // more than can be mapped
    if (file != INVALID_HANDLE_VALUE || security || protection != PAGE_READWRITE || size == 0)
        return Refuse(ERROR_INVALID_PARAMETER);
    if (size >= kMost) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    return NamedObject::Reach(name, {rv::ObjectKind::kBlock, true, size});
}

HANDLE OpenFileMappingA(DWORD access, BOOL inherited, LPCSTR name) noexcept {
    if (access != FILE_MAP_ALL_ACCESS || inherited) return Refuse(ERROR_INVALID_PARAMETER);
    return NamedObject::Reach(name, {rv::ObjectKind::kBlock, false, 0});
}

void* MapViewOfFile(HANDLE handle, DWORD access, DWORD offset_high, DWORD offset_low,
                    std::size_t size) noexcept {
    NamedObject* const object = NamedObject::Of(handle, rv::ObjectKind::kBlock);
    if (!object) return nullptr;
    if (access != FILE_MAP_ALL_ACCESS || offset_high != 0 || offset_low != 0 || size != 0)
        return Refuse(ERROR_INVALID_PARAMETER);
    auto* const view = new (std::nothrow) View;
    if (!view) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    view->object = object;
    view->address = object->Map();
    if (!view->address) {
        delete view;
        return nullptr;
    }
    object->Add_Reference();
    const std::lock_guard lock(g_Mutex);
    view->next = std::exchange(g_Views, view);
    return view->address;
}

BOOL UnmapViewOfFile(LPCVOID address) noexcept {
    View* view;
    {
        const std::lock_guard lock(g_Mutex);
        View** const place = Place_Of(address);
        view = *place;
        if (view) *place = view->next;
    }
    if (!view) {
        SetLastError(ERROR_INVALID_ADDRESS);
        return FALSE;
    }
    munmap(view->address, view->object->Size());
    view->object->Drop();
    delete view;
    return TRUE;
}

std::size_t VirtualQuery(LPCVOID address, MEMORY_BASIC_INFORMATION* information,
                         std::size_t size) noexcept {
    const std::lock_guard lock(g_Mutex);
    const View* const view = *Place_Of(address);
    if (!view || size < sizeof *information) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    *information = {view->address, view->address,  PAGE_READWRITE, view->object->Size(),
                    MEM_COMMIT,    PAGE_READWRITE, MEM_MAPPED};
    return sizeof *information;
}
