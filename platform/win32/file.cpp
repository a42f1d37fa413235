// Files over POSIX descriptors.
#include "file.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <memory>
#include <new>
#include <utility>

#include "error.h"
#include "handle.h"
#include "kernel_object.h"
#include "native_path.h"

static_assert(sizeof(off_t) == sizeof(LONGLONG), "offsets are 64 bits wide");

namespace {

constexpr mode_t kUsersMode = 0666;
constexpr mode_t kPrivateMode = 0600;

class File final : public rv::KernelObject {
public:
    ~File() override { static_cast<void>(Release()); }

    DWORD Close() noexcept override { return Release(); }

    int m_Descriptor = -1;
    DWORD m_Access = 0;
    bool m_IsRegular = false;

private:
    DWORD Release() noexcept {
        const int descriptor = std::exchange(m_Descriptor, -1);
        // An interrupted close has closed, all the same.
        if (descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR) return ERROR_SUCCESS;
        return rv::Error_From_Errno(errno);
    }
};

BOOL Refuse(DWORD error) noexcept {
    SetLastError(error);
    return FALSE;
}

BOOL Refuse_Errno() noexcept {
    return Refuse(rv::Error_From_Errno(errno));
}

// The file behind a handle that grants `access`, null with the last error set.
File* File_Of(HANDLE handle, DWORD access) noexcept {
    File* const file = dynamic_cast<File*>(rv::Object_Of(handle));
    if (!file) SetLastError(ERROR_INVALID_HANDLE);
    if (!file || (file->m_Access & access) == access) return file;
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
}

// Repeats a call of the system that a signal interrupted.
template <class Call>
auto Restarted(Call call) noexcept {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR) return result;
    }
}

int Flags_Of_Access(DWORD access) noexcept {
    if (!(access & GENERIC_WRITE)) return O_RDONLY;
    return access & GENERIC_READ ? O_RDWR : O_WRONLY;
}

int Flags_Of_Disposition(DWORD disposition) noexcept {
    switch (disposition) {
        case CREATE_NEW:
            return O_CREAT | O_EXCL | O_NOFOLLOW;
        case CREATE_ALWAYS:
            return O_CREAT | O_TRUNC;
        case OPEN_ALWAYS:
            return O_CREAT;
        case TRUNCATE_EXISTING:
            return O_TRUNC;
        default:
            return 0;
    }
}

bool Is_Supported(DWORD access, DWORD share, DWORD disposition, DWORD attributes) noexcept {
    constexpr DWORD kShares = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    constexpr DWORD kAttributes = FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_TEMPORARY;
    if (access & ~(GENERIC_READ | GENERIC_WRITE) || share & ~kShares || attributes & ~kAttributes)
        return false;
    if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING) return false;
    return disposition != TRUNCATE_EXISTING || access & GENERIC_WRITE;
}

// Takes what was opened if it is of a kind that a handle may stand for.
DWORD Admit(File& file) noexcept {
    struct stat status;
    if (::fstat(file.m_Descriptor, &status) != 0) return rv::Error_From_Errno(errno);
    file.m_IsRegular = S_ISREG(status.st_mode);
    if (!file.m_IsRegular && !S_ISCHR(status.st_mode) && !S_ISBLK(status.st_mode))
        return ERROR_ACCESS_DENIED;
    // It has served its purpose, that opening does not wait; reading may.
    return ::fcntl(file.m_Descriptor, F_SETFL, 0) == 0 ? ERROR_SUCCESS
                                                       : rv::Error_From_Errno(errno);
}

DWORD Open(File& file, const char* path, int flags, mode_t mode) noexcept {
    rv::HeapText native;
    if (const DWORD error = rv::Native_Path(path, native); error != ERROR_SUCCESS) return error;
    flags |= O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    file.m_Descriptor = Restarted([&] { return ::open(native.get(), flags, mode); });
    if (file.m_Descriptor >= 0) return Admit(file);
    return errno == ENOENT ? rv::Missing_File_Error(native.get()) : rv::Error_From_Errno(errno);
}

// Keeps a write beyond the process's limit of a file's size from ending the process: while one
// lives, the signal for it waits, and it is gone afterwards. Without a limit it does nothing.
class FileSizeSignalGuard {
public:
    FileSizeSignalGuard() noexcept {
        struct rlimit limit;
        if (::getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return;
        sigemptyset(&m_Signal);
        sigaddset(&m_Signal, SIGXFSZ);
        // One that was waiting before is somebody else's.
        sigset_t pending;
        if (sigpending(&pending) != 0 || sigismember(&pending, SIGXFSZ)) return;
        m_IsActive = pthread_sigmask(SIG_BLOCK, &m_Signal, &m_Before) == 0;
    }
    FileSizeSignalGuard(const FileSizeSignalGuard&) = delete;
    FileSizeSignalGuard& operator=(const FileSizeSignalGuard&) = delete;
    ~FileSizeSignalGuard() {
        if (!m_IsActive) return;
        const int error = errno;
        constexpr timespec kNow = {};
        Restarted([&] { return sigtimedwait(&m_Signal, nullptr, &kNow); });
        pthread_sigmask(SIG_SETMASK, &m_Before, nullptr);
        errno = error;
    }

private:
    bool m_IsActive = false;
    sigset_t m_Signal;
    sigset_t m_Before;
};

}  // namespace

HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD attributes, HANDLE template_file) noexcept {
    if (security || template_file || !Is_Supported(access, share, disposition, attributes)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    // Before the file is touched: what cannot be handed out must not have been emptied.
    std::unique_ptr<File> file(new (std::nothrow) File);
    if (!file) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return INVALID_HANDLE_VALUE;
    }
    file->m_Access = access;
    const int flags = Flags_Of_Access(access) | Flags_Of_Disposition(disposition);
    const mode_t mode = attributes & FILE_ATTRIBUTE_TEMPORARY ? kPrivateMode : kUsersMode;
    if (const DWORD error = Open(*file, path, flags, mode); error != ERROR_SUCCESS) {
        file.reset();
        SetLastError(error);
        return INVALID_HANDLE_VALUE;
    }
    return static_cast<rv::KernelObject*>(file.release());
}

BOOL ReadFile(HANDLE handle, LPVOID buffer, DWORD count, DWORD* read,
              OVERLAPPED* overlapped) noexcept {
    if (!read || overlapped) return Refuse(ERROR_INVALID_PARAMETER);
    *read = 0;
    const File* const file = File_Of(handle, GENERIC_READ);
    if (!file) return FALSE;
    auto* const bytes = static_cast<BYTE*>(buffer);
    // One call moves less than 2 GiB.
    while (*read < count) {
        const DWORD wanted = count - *read;
        const ssize_t got =
            Restarted([&] { return ::read(file->m_Descriptor, bytes + *read, wanted); });
        if (got < 0) return Refuse_Errno();
        *read += static_cast<DWORD>(got);
        // A device may have no more for now, and waiting for it would hold up what there is.
        if (got == 0 || !file->m_IsRegular) break;
    }
    return TRUE;
}

BOOL WriteFile(HANDLE handle, LPCVOID buffer, DWORD count, DWORD* written,
               OVERLAPPED* overlapped) noexcept {
    if (!written || overlapped) return Refuse(ERROR_INVALID_PARAMETER);
    *written = 0;
    const File* const file = File_Of(handle, GENERIC_WRITE);
    if (!file) return FALSE;
    const FileSizeSignalGuard guard;
    const auto* const bytes = static_cast<const BYTE*>(buffer);
    while (*written < count) {
        const DWORD left = count - *written;
        const ssize_t put =
            Restarted([&] { return ::write(file->m_Descriptor, bytes + *written, left); });
        if (put < 0) return Refuse_Errno();
        if (put == 0) return Refuse(ERROR_WRITE_FAULT);
        *written += static_cast<DWORD>(put);
    }
    return TRUE;
}

BOOL SetFilePointerEx(HANDLE handle, LARGE_INTEGER distance, LARGE_INTEGER* position,
                      DWORD method) noexcept {
    static_assert(FILE_BEGIN == SEEK_SET && FILE_CURRENT == SEEK_CUR && FILE_END == SEEK_END);
    if (method > FILE_END) return Refuse(ERROR_INVALID_PARAMETER);
    const File* const file = File_Of(handle, 0);
    if (!file) return FALSE;
    const off_t now = ::lseek(file->m_Descriptor, distance.QuadPart, static_cast<int>(method));
    // The system has one code for a place before the beginning and one beyond all files.
    if (now < 0 && errno == EINVAL && distance.QuadPart < 0) return Refuse(ERROR_NEGATIVE_SEEK);
    if (now < 0) return Refuse_Errno();
    if (position) position->QuadPart = now;
    return TRUE;
}

BOOL GetFileSizeEx(HANDLE handle, LARGE_INTEGER* size) noexcept {
    const File* const file = File_Of(handle, 0);
    if (!file) return FALSE;
    struct stat status;
    if (::fstat(file->m_Descriptor, &status) != 0) return Refuse_Errno();
    size->QuadPart = status.st_size;
    return TRUE;
}

// A native path, as the library's own temporary names are, is deleted without memory of its own:
// the file that an exhausted heap leaves behind must go all the same.
BOOL DeleteFileA(LPCSTR path) noexcept {
    rv::HeapText copy;
    if (!path || !rv::Is_Native_Path(path))
        if (const DWORD error = rv::Native_Path(path, copy); error != ERROR_SUCCESS)
            return Refuse(error);
    const char* const native = copy ? copy.get() : path;
    struct stat status;
    if (::lstat(native, &status) == 0) {
        if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))
            return Refuse(ERROR_ACCESS_DENIED);
        if (::unlink(native) == 0) return TRUE;
    }
    if (errno != ENOENT) return Refuse_Errno();
    if (!copy)
        if (const DWORD error = rv::Native_Path(path, copy); error != ERROR_SUCCESS)
            return Refuse(error);
    return Refuse(rv::Missing_File_Error(copy.get()));
}
