// The last error of a thread, and what errno means in its numbers.
#include "error.h"

#include <cerrno>

namespace {

thread_local DWORD t_LastError = ERROR_SUCCESS;

}  // namespace

DWORD GetLastError() noexcept {
    return t_LastError;
}

void SetLastError(DWORD error) noexcept {
    t_LastError = error;
}

DWORD rv::Error_From_Errno(int code) noexcept {
    switch (code) {
        case 0:
            return ERROR_SUCCESS;
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
            return ERROR_PATH_NOT_FOUND;
        case EMFILE:
        case ENFILE:
            return ERROR_TOO_MANY_OPEN_FILES;
        case EACCES:
        case EPERM:
        case EISDIR:
        // What opening a socket gives, or a pipe that nobody reads.
        case ENXIO:
            return ERROR_ACCESS_DENIED;
        case EROFS:
            return ERROR_WRITE_PROTECT;
        case EBADF:
            return ERROR_INVALID_HANDLE;
        case ENOMEM:
            return ERROR_NOT_ENOUGH_MEMORY;
        case EEXIST:
            return ERROR_FILE_EXISTS;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return ERROR_DISK_FULL;
        // A program that runs, a device in use, a file under somebody's lease.
        case ETXTBSY:
        case EBUSY:
        case EWOULDBLOCK:
            return ERROR_SHARING_VIOLATION;
        case ESPIPE:
            return ERROR_SEEK_ON_DEVICE;
        case ENAMETOOLONG:
            return ERROR_FILENAME_EXCED_RANGE;
        case ELOOP:
            return ERROR_CANT_RESOLVE_FILENAME;
        case EINVAL:
            return ERROR_INVALID_PARAMETER;
        case EFAULT:
            return ERROR_NOACCESS;
        case EIO:
            return ERROR_IO_DEVICE;
        default:
            return ERROR_GEN_FAILURE;
    }
}
