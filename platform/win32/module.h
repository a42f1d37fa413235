// Modules and their string resources.
//
// A module is a table of texts. An executable or a library that has some defines one with static
// lifetime; its address is the module's handle.
#pragma once

#include <cstddef>
#include <string_view>

#include "../export.h"
#include "types.h"

namespace rv {

struct StringResource {
    UINT id;
    std::string_view text;  // with static lifetime; handed out byte by byte
};

struct StringTable {
    const StringResource* entries;  // by ascending id, each id once
    std::size_t count;
};

// Makes `table` the application's own module, which a null handle stands for as well. The last call
// counts; before the first one the application has no texts. `table` is not copied. Any thread.
RVPLATFORM_API void Register_Application_Strings(StringTable& table) noexcept;

}  // namespace rv

using HINSTANCE = rv::StringTable*;
using HMODULE = HINSTANCE;

// The application's own module for null. There are no modules by name here: null with
// ERROR_MOD_NOT_FOUND. Any thread.
[[nodiscard]] RVPLATFORM_API HMODULE GetModuleHandleA(LPCSTR name) noexcept;

// Copies the text `id` of a module to `buffer` of `room` bytes, cut to fit, with a NUL, and gives
// its length without that. 0 with ERROR_RESOURCE_NAME_NOT_FOUND when the module lacks the text, and
// the buffer then holds the empty one. Any thread.
RVPLATFORM_API int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int room) noexcept;
