// Modules and their resources.
//
// A module is what a program or a shared library has of numbered texts and images. The resource
// compiler makes a table of them, which enters itself when the program or the library is loaded;
// its address is the module's handle.
#pragma once

#include <span>
#include <string_view>

#include "../export.h"
#include "types.h"

namespace rv {

struct StringResource {
    UINT id;
    std::string_view text;  // with static lifetime; handed out byte by byte
};

struct BitmapResource {
    UINT id;
    std::string_view file;  // the whole file, with static lifetime
};

// An icon or a cursor.
struct IconResource {
    UINT id;
    std::string_view file;   // as of a bitmap
    HICON shared = nullptr;  // once it has been loaded; the layer's own
};

// Each table by ascending id, each id once.
struct Module {
    std::span<const StringResource> strings;
    std::span<const BitmapResource> bitmaps;
    std::span<IconResource> icons;
    std::span<IconResource> cursors;
    // The layer's own.
    Module* next = nullptr;
    void* library = nullptr;  // what LoadLibraryA had from the system
};

// Enters a module for as long as one lives. Both have static lifetime, in the program or the
// library whose resources they are. Any thread.
class RVPLATFORM_API ModuleEntry {
public:
    explicit ModuleEntry(Module& module) noexcept;
    ModuleEntry(const ModuleEntry&) = delete;
    ModuleEntry& operator=(const ModuleEntry&) = delete;
    // Ends the module's icons and cursors, too.
    ~ModuleEntry();

private:
    Module& m_Module;
};

}  // namespace rv

using HINSTANCE = rv::Module*;
using HMODULE = HINSTANCE;

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 2;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 4;

// The number of a resource in the place of a name.
inline LPSTR MAKEINTRESOURCEA(UINT_PTR id) noexcept {
    return reinterpret_cast<LPSTR>(UINT_PTR{static_cast<WORD>(id)});
}

// The application's own module for null; one without resources has one, too. By name: dbghelp.dll
// while it is loaded (see library.h); null with ERROR_MOD_NOT_FOUND for any other. Any thread.
[[nodiscard]] RVPLATFORM_API HMODULE GetModuleHandleA(LPCSTR name) noexcept;

// The module that an address lies in. `flags` are both of the above. FALSE with ERROR_MOD_NOT_FOUND
// and null where that module has no resources; ERROR_INVALID_PARAMETER for other flags. Any thread.
[[nodiscard]] RVPLATFORM_API BOOL GetModuleHandleExA(DWORD flags, LPCSTR address,
                                                     HMODULE* module) noexcept;

// Copies the text `id` of a module to `buffer` of `room` bytes, cut to fit, with a NUL, and gives
// its length without that. Null is the application's own module. 0 with
// ERROR_RESOURCE_NAME_NOT_FOUND when the module lacks the text, and the buffer then holds the empty
// one. Any thread.
RVPLATFORM_API int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int room) noexcept;
