#include "file_attributes.h"

#include <sys/stat.h>

#include <cerrno>

#include "error.h"
#include "file.h"
#include "native_path.h"

namespace {

FILETIME Time_Of(const struct timespec& time) noexcept {
    constexpr ULONGLONG kSecondsTo1970 = 11'644'473'600;
    const ULONGLONG count = (static_cast<ULONGLONG>(time.tv_sec) + kSecondsTo1970) * 10'000'000 +
                            static_cast<ULONGLONG>(time.tv_nsec) / 100;
    return {static_cast<DWORD>(count), static_cast<DWORD>(count >> 32)};
}

BOOL Refuse(DWORD error) noexcept {
    SetLastError(error);
    return FALSE;
}

}  // namespace

BOOL GetFileAttributesExA(LPCSTR path, GET_FILEEX_INFO_LEVELS, LPVOID data) noexcept {
    rv::HeapText native;
    if (const DWORD error = rv::Native_Path(path, native); error != ERROR_SUCCESS)
        return Refuse(error);
    struct stat status;
    if (::stat(native.get(), &status) != 0) {
        const int code = errno;
        return Refuse(code == ENOENT ? rv::Missing_File_Error(native.get())
                                     : rv::Error_From_Errno(code));
    }
    const FILETIME time = Time_Of(status.st_mtim);
    const auto size = static_cast<ULONGLONG>(status.st_size);
    *static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data) = {
        S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL,
        time,
        time,
        time,
        static_cast<DWORD>(size >> 32),
        static_cast<DWORD>(size)};
    return TRUE;
}
