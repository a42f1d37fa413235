#include "shell_folder.h"

#include <cstdlib>
#include <cstring>

#include "directory.h"
#include "error.h"
#include "native_path.h"
#include "path.h"

namespace {

constexpr char kCommonData[] = "/var/lib";

// Writes the folder without a separator at its end, and tells whether it found room.
bool Common_Data(char* path) noexcept {
    // A program with the rights of another user is not steered by the environment.
    const char* chosen = ::secure_getenv("RVUTILS_APPDATA");
    if (!chosen || !*chosen) chosen = kCommonData;
    DWORD length = GetFullPathNameA(chosen, MAX_PATH, path, nullptr);
    if (length >= MAX_PATH) SetLastError(ERROR_FILENAME_EXCED_RANGE);
    if (length == 0 || length >= MAX_PATH) return false;
    if (length > 1 && path[length - 1] == '/') path[length - 1] = '\0';
    return true;
}

}  // namespace

BOOL SHGetSpecialFolderPathA(HWND, LPSTR path, int folder, BOOL create) noexcept {
    if (folder != CSIDL_COMMON_APPDATA) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    if (!Common_Data(path)) return FALSE;
    const DWORD error = create ? rv::Make_Directories(path) : ERROR_SUCCESS;
    if (error == ERROR_SUCCESS || error == ERROR_ALREADY_EXISTS) return TRUE;
    SetLastError(error);
    return FALSE;
}

int SHCreateDirectoryExA(HWND, LPCSTR path, const SECURITY_ATTRIBUTES*) noexcept {
    rv::HeapText native;
    DWORD error = rv::Native_Path(path, native);
    if (error == ERROR_SUCCESS)
        error = native[0] == '/' ? rv::Make_Directories(native.get()) : ERROR_BAD_PATHNAME;
    return static_cast<int>(error);
}
