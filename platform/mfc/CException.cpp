// The class library's exceptions, and which cause a system error stands for.
#include "CException.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>

namespace {

struct CauseOfError {
    DWORD error;
    CFileException::Cause cause;
};

// Sorted by the number.
constexpr CauseOfError kCauses[] = {
    {ERROR_SUCCESS, CFileException::none},
    {ERROR_FILE_NOT_FOUND, CFileException::fileNotFound},
    {ERROR_PATH_NOT_FOUND, CFileException::badPath},
    {ERROR_TOO_MANY_OPEN_FILES, CFileException::tooManyOpenFiles},
    {ERROR_ACCESS_DENIED, CFileException::accessDenied},
    {ERROR_INVALID_HANDLE, CFileException::fileNotFound},
    {ERROR_INVALID_ACCESS, CFileException::accessDenied},
    {ERROR_INVALID_DRIVE, CFileException::badPath},
    {ERROR_CURRENT_DIRECTORY, CFileException::removeCurrentDir},
    {ERROR_NO_MORE_FILES, CFileException::fileNotFound},
    {ERROR_WRITE_PROTECT, CFileException::accessDenied},
    {ERROR_NOT_READY, CFileException::hardIO},
    {ERROR_CRC, CFileException::hardIO},
    {ERROR_SEEK, CFileException::badSeek},
    {ERROR_WRITE_FAULT, CFileException::hardIO},
    {ERROR_READ_FAULT, CFileException::hardIO},
    {ERROR_SHARING_VIOLATION, CFileException::sharingViolation},
    {ERROR_LOCK_VIOLATION, CFileException::lockViolation},
    {ERROR_HANDLE_EOF, CFileException::endOfFile},
    {ERROR_HANDLE_DISK_FULL, CFileException::diskFull},
    {ERROR_BAD_NETPATH, CFileException::badPath},
    {ERROR_FILE_EXISTS, CFileException::accessDenied},
    {ERROR_CANNOT_MAKE, CFileException::directoryFull},
    {ERROR_DISK_FULL, CFileException::diskFull},
    {ERROR_INVALID_NAME, CFileException::badPath},
    {ERROR_NEGATIVE_SEEK, CFileException::badSeek},
    {ERROR_SEEK_ON_DEVICE, CFileException::badSeek},
    {ERROR_BAD_PATHNAME, CFileException::badPath},
    {ERROR_ALREADY_EXISTS, CFileException::accessDenied},
    {ERROR_FILENAME_EXCED_RANGE, CFileException::badPath},
    {ERROR_DIRECTORY, CFileException::badPath},
    {ERROR_IO_DEVICE, CFileException::hardIO},
    {ERROR_CANT_RESOLVE_FILENAME, CFileException::badPath},
};

constexpr bool Below(const CauseOfError& left, const CauseOfError& right) {
    return left.error < right.error;
}

static_assert(std::is_sorted(std::begin(kCauses), std::end(kCauses), Below));

// Never destroyed: an allocation may still fail while the process ends.
CMemoryException* The_Memory_Exception() noexcept {
    alignas(CMemoryException) static std::byte place[sizeof(CMemoryException)];
    static auto* const exception = new (place) CMemoryException;
    return exception;
}

}  // namespace

CException::~CException() = default;

void CException::Delete() noexcept {
    delete this;
}

BOOL CException::GetErrorMessage(char*, UINT) const noexcept {
    return FALSE;
}

CMemoryException::~CMemoryException() = default;

void CMemoryException::Delete() noexcept {}

BOOL CMemoryException::GetErrorMessage(char* text, UINT room) const noexcept {
    return std::snprintf(text, room, "Out of memory.") > 0;
}

CFileException::CFileException(int cause, LONG os_error, const char* file_name)
    : m_cause(cause), m_lOsError(os_error), m_strFileName(file_name) {}

CFileException::~CFileException() = default;

int CFileException::OsErrorToException(LONG os_error) noexcept {
    const CauseOfError sought = {static_cast<DWORD>(os_error), none};
    const auto* const found =
        std::lower_bound(std::begin(kCauses), std::end(kCauses), sought, Below);
    const bool known = found != std::end(kCauses) && found->error == sought.error;
    return known ? found->cause : genericException;
}

void AfxThrowMemoryException() {
    throw The_Memory_Exception();
}

void AfxThrowFileException(int cause, LONG os_error, const char* file_name) {
    throw new CFileException(cause, os_error, file_name);
}
