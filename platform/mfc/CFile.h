// Files of bytes.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "Allocation.h"
#include "CException.h"
#include "CString.h"

// An open file, or none. The object owns its handle and closes it when it ends. Offsets and lengths
// are 64-bit; texts of paths follow the platform's rules (see paths.h). An object belongs to one
// thread at a time. What fails throws CFileException*, unless an operation says otherwise;
// CMemoryException* when it is memory that the system lacks. An operation on no open file fails
// with ERROR_INVALID_HANDLE. Child processes never inherit the file.
class RVPLATFORM_API CFile : public rv::HeapObject {
public:
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        // Whom to keep away where the system does that; compat is exclusive.
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,      // makes the file, empties one that is there
        modeNoTruncate = 0x2000,  // with modeCreate: opens one that is there as it is
        typeBinary = 0x8000
    };
    enum SeekPosition : UINT { begin = 0, current = 1, end = 2 };

    static const HANDLE hFileNull;  // what m_hFile holds while nothing is open

    CFile() noexcept;
    // Takes over an open handle.
    explicit CFile(HANDLE file) noexcept;
    // Opens `path`, or throws.
    CFile(const char* path, UINT flags);
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    // Closes without a word.
    virtual ~CFile();

    // Opens `path`; what was open must be closed before. False on failure, told in `*error` when it
    // is not null; an exhausted heap is told there, too (ERROR_NOT_ENOUGH_MEMORY), with the file
    // untouched. Never throws. A directory is refused, and so is, on Linux, a pipe or a socket.
    [[nodiscard]] virtual BOOL Open(const char* path, UINT flags, CFileException* error = nullptr);
    // Closes; throws when the system tells a late failure. The object is free for another file
    // either way.
    virtual void Close();
    // Closes without a word, whatever happened; GetLastError stays.
    virtual void Abort() noexcept;

    // Reads up to `count` bytes and gives how many it were: fewer only at the file's end, 0 at and
    // behind it; a device gives what it has.
    virtual UINT Read(void* buffer, UINT count);
    // Writes all `count` bytes, or throws; how many were written then, the position tells. A full
    // disk, a short write and the process's limit of a file's size have the cause diskFull.
    virtual void Write(const void* buffer, UINT count);
    // Moves to `offset` from `from` and gives the new offset from the beginning. Behind the end is
    // allowed; before the beginning throws with the cause badSeek.
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG GetLength() const;
    // The absolute path the file was opened by, empty without an open file and for a handle that
    // was taken over.
    virtual CString GetFilePath() const;

    HANDLE m_hFile;

private:
    CString m_strFileName;
};
