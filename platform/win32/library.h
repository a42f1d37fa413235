// Libraries that are loaded by name: shared libraries with resources, and dbghelp.dll (case and
// extension do not count), which the layer stands in for, with one function:
//
//     BOOL MakeSureDirectoryPathExists(const char* path)
//
// It makes what is missing of the directories in front of the last separator of a path (see
// path.h), and gives TRUE when they are there. Any thread.
#pragma once

#include "../export.h"
#include "module.h"
#include "types.h"

using FARPROC = INT_PTR (*)();

// A module, to be given back by FreeLibrary as often as it was taken. `name`: a path (see path.h);
// what has no directory is looked for where the system looks. Null with ERROR_MOD_NOT_FOUND when it
// cannot be loaded, or has no resources.
[[nodiscard]] RVPLATFORM_API HMODULE LoadLibraryA(LPCSTR name) noexcept;

// FALSE with ERROR_INVALID_HANDLE for a module that was not taken so. Behind the last one the
// module is gone.
RVPLATFORM_API BOOL FreeLibrary(HMODULE module) noexcept;

// The function of that name in dbghelp.dll, to be cast to what it is; null with
// ERROR_PROC_NOT_FOUND for all others.
[[nodiscard]] RVPLATFORM_API FARPROC GetProcAddress(HMODULE module, LPCSTR name) noexcept;

namespace rv {

// The module of that name while it is loaded, else null.
[[nodiscard]] HMODULE Loaded_Library(LPCSTR name) noexcept;

}  // namespace rv
