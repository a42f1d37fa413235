// The class library's exceptions: thrown and caught by pointer, disposed of with Delete().
//
//     try {
//         file.Write(bytes, count);
//     } catch (CFileException* error) {
//         ...
//         error->Delete();
//     }
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "CString.h"
#include "HeapObject.h"

// Base of the family. An object made by one of the AfxThrow functions belongs to whoever catches
// it and does not throw it on.
class RVPLATFORM_API CException : public rv::HeapObject {
public:
    CException() = default;
    CException(const CException&) = delete;
    CException& operator=(const CException&) = delete;
    virtual ~CException();

    // Ends the life of an exception that was made by new or thrown. Call it once, in the handler
    // that does not rethrow.
    virtual void Delete() noexcept;

    // Copies what happened, for the user, to `text` of `room` bytes, cut to fit, with a NUL. FALSE,
    // with nothing written, when the exception does not tell.
    virtual BOOL GetErrorMessage(char* text, UINT room) const noexcept;
};

// The heap is exhausted. One object serves every throw, so that throwing needs no memory. Thrown
// by AfxThrowMemoryException.
class RVPLATFORM_API CMemoryException : public CException {
public:
    ~CMemoryException() override;

    void Delete() noexcept override;
    BOOL GetErrorMessage(char* text, UINT room) const noexcept override;
};

// A file operation failed.
class RVPLATFORM_API CFileException : public CException {
public:
    enum Cause {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG os_error = -1, const char* file_name = nullptr);
    ~CFileException() override;

    // The Cause that stands for a system error number; genericException for one that none stands
    // for.
    [[nodiscard]] static int OsErrorToException(LONG os_error) noexcept;

    int m_cause;            // a Cause
    LONG m_lOsError;        // the system's number (GetLastError), -1 when there is none
    CString m_strFileName;  // path of the file, empty when it is not known
};

// Throws CFileException* with these fields, or CMemoryException* when there is no memory for it.
[[noreturn]] RVPLATFORM_API void AfxThrowFileException(int cause, LONG os_error = -1,
                                                       const char* file_name = nullptr);
