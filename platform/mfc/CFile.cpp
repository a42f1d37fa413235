// Files of bytes, over the system's handles.
#include "CFile.h"

#include <utility>

namespace {

constexpr UINT kShareMask = 0x0070;

DWORD Access_Of(UINT flags) noexcept {
    if (flags & CFile::modeReadWrite) return GENERIC_READ | GENERIC_WRITE;
    return flags & CFile::modeWrite ? GENERIC_WRITE : GENERIC_READ;
}

// What others may do with the file meanwhile.
DWORD Share_Of(UINT flags) noexcept {
    switch (flags & kShareMask) {
        case CFile::shareDenyWrite:
            return FILE_SHARE_READ;
        case CFile::shareDenyRead:
            return FILE_SHARE_WRITE;
        case CFile::shareDenyNone:
            return FILE_SHARE_READ | FILE_SHARE_WRITE;
        default:
            return 0;
    }
}

DWORD Disposition_Of(UINT flags) noexcept {
    if (!(flags & CFile::modeCreate)) return OPEN_EXISTING;
    return flags & CFile::modeNoTruncate ? OPEN_ALWAYS : CREATE_ALWAYS;
}

LARGE_INTEGER Large(LONGLONG value) noexcept {
    LARGE_INTEGER large;
    large.QuadPart = value;
    return large;
}

[[noreturn]] void Throw_Os_Error(DWORD os_error, const char* path) {
    if (os_error == ERROR_NOT_ENOUGH_MEMORY) AfxThrowMemoryException();
    const auto number = static_cast<LONG>(os_error);
    AfxThrowFileException(CFileException::OsErrorToException(number), number, path);
}

// The absolute form of a path; the path as it is where the system has none for it.
CString Full_Path(const char* path) {
    CString full;
    // The room that it takes can grow between two calls: another thread may have changed the
    // current directory.
    for (DWORD room = MAX_PATH;;) {
        char* const buffer = full.GetBuffer(static_cast<int>(room));
        const DWORD length = GetFullPathNameA(path, room, buffer, nullptr);
        if (length == 0 && GetLastError() == ERROR_NOT_ENOUGH_MEMORY) AfxThrowMemoryException();
        if (length == 0) return path;
        if (length < room) {
            full.ReleaseBuffer(static_cast<int>(length));
            full.FreeExtra();
            return full;
        }
        room = length;
    }
}

struct Opened {
    HANDLE file = INVALID_HANDLE_VALUE;
    CString path;
    DWORD error = ERROR_SUCCESS;
};

// Never throws. An exhausted heap is an error like others, found before the file is touched.
Opened Open_File(const char* path, UINT flags) noexcept {
    Opened opened;
    try {
        opened.path = Full_Path(path ? path : "");
    } catch (CMemoryException* exception) {
        exception->Delete();
        opened.error = ERROR_NOT_ENOUGH_MEMORY;
        return opened;
    }
    opened.file = CreateFileA(path ? path : "", Access_Of(flags), Share_Of(flags), nullptr,
                              Disposition_Of(flags), FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened.file == INVALID_HANDLE_VALUE) opened.error = GetLastError();
    return opened;
}

}  // namespace

const HANDLE CFile::hFileNull = INVALID_HANDLE_VALUE;

CFile::CFile() noexcept : m_hFile(INVALID_HANDLE_VALUE) {}

CFile::CFile(HANDLE file) noexcept : m_hFile(file) {}

CFile::CFile(const char* path, UINT flags) : m_hFile(INVALID_HANDLE_VALUE) {
    Opened opened = Open_File(path, flags);
    if (opened.error != ERROR_SUCCESS) Throw_Os_Error(opened.error, opened.path);
    m_hFile = opened.file;
    m_strFileName = std::move(opened.path);
}

CFile::~CFile() {
    CFile::Abort();
}

BOOL CFile::Open(const char* path, UINT flags, CFileException* error) {
    Opened opened = Open_File(path, flags);
    if (opened.error == ERROR_SUCCESS) {
        m_hFile = opened.file;
        m_strFileName = std::move(opened.path);
        return TRUE;
    }
    if (error) {
        error->m_lOsError = static_cast<LONG>(opened.error);
        error->m_cause = CFileException::OsErrorToException(error->m_lOsError);
        error->m_strFileName = std::move(opened.path);
    }
    return FALSE;
}

void CFile::Close() {
    if (m_hFile == INVALID_HANDLE_VALUE) return;
    const CString path = std::move(m_strFileName);
    if (!CloseHandle(std::exchange(m_hFile, INVALID_HANDLE_VALUE)))
        Throw_Os_Error(GetLastError(), path);
}

void CFile::Abort() noexcept {
    if (m_hFile == INVALID_HANDLE_VALUE) return;
    // It ends files in the wake of failures, whose number a caller may not have read yet.
    const DWORD error = GetLastError();
    CloseHandle(std::exchange(m_hFile, INVALID_HANDLE_VALUE));
    SetLastError(error);
    m_strFileName.Empty();
}

UINT CFile::Read(void* buffer, UINT count) {
    DWORD read = 0;
    if (!ReadFile(m_hFile, buffer, count, &read, nullptr))
        Throw_Os_Error(GetLastError(), m_strFileName);
    return read;
}

void CFile::Write(const void* buffer, UINT count) {
    DWORD written = 0;
    if (!WriteFile(m_hFile, buffer, count, &written, nullptr))
        Throw_Os_Error(GetLastError(), m_strFileName);
    if (written != count) Throw_Os_Error(ERROR_DISK_FULL, m_strFileName);
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from) {
    LARGE_INTEGER position;
    if (!SetFilePointerEx(m_hFile, Large(offset), &position, from))
        Throw_Os_Error(GetLastError(), m_strFileName);
    return static_cast<ULONGLONG>(position.QuadPart);
}

ULONGLONG CFile::GetPosition() const {
    LARGE_INTEGER position;
    if (!SetFilePointerEx(m_hFile, Large(0), &position, FILE_CURRENT))
        Throw_Os_Error(GetLastError(), m_strFileName);
    return static_cast<ULONGLONG>(position.QuadPart);
}

ULONGLONG CFile::GetLength() const {
    LARGE_INTEGER length;
    if (!GetFileSizeEx(m_hFile, &length)) Throw_Os_Error(GetLastError(), m_strFileName);
    return static_cast<ULONGLONG>(length.QuadPart);
}

CString CFile::GetFilePath() const {
    return m_strFileName;
}
