#include "WholeFile.h"

#include "../../platform/mfc/CFile.h"

namespace rv {
namespace {

constexpr ULONGLONG kLargest = ULONGLONG{256} << 20;

bool Is_Missing(const CFileException& error) noexcept {
    return error.m_cause == CFileException::fileNotFound ||
           error.m_cause == CFileException::badPath;
}

// Null when the file turned out too large.
HeapText Read(CFile& file, std::size_t& size) {
    const ULONGLONG length = file.GetLength();
    if (length > kLargest) return nullptr;
    HeapText bytes(static_cast<char*>(Heap_Allocate(static_cast<std::size_t>(length))));
    if (!bytes) AfxThrowMemoryException();
    size = file.Read(bytes.get(), static_cast<UINT>(length));
    return bytes;
}

}  // namespace

FileResult Read_Whole_File(const char* path, HeapText& bytes, std::size_t& size, CString& fault) {
    CFile file;
    CFileException error;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone, &error)) {
        if (error.m_lOsError == static_cast<LONG>(ERROR_NOT_ENOUGH_MEMORY))
            AfxThrowMemoryException();
        if (Is_Missing(error)) return FileResult::kMissing;
        fault.Format("%s: cannot be opened; check the rights, and that it is no folder", path);
        return FileResult::kRefused;
    }
    try {
        bytes = Read(file, size);
    } catch (CFileException* failure) {
        failure->Delete();
        fault.Format("%s: cannot be read; check the disk", path);
        return FileResult::kRefused;
    }
    if (bytes) return FileResult::kRead;
    fault.Format("%s: has more than 256 MiB; take a smaller file", path);
    return FileResult::kRefused;
}

}  // namespace rv
