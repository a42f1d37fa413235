// What the tests of files share.
#pragma once

#include <RVUtils/CFile.h>

#include <string>

namespace rv_test {

// What an operation throws.
struct Thrown {
    int cause = -1;  // -1: nothing
    DWORD os_error = 0;
    std::string path;
    bool is_memory = false;
};

template <class Operation>
Thrown Catch(Operation operation) {
    Thrown thrown;
    try {
        operation();
    } catch (CFileException* exception) {
        thrown = {exception->m_cause, static_cast<DWORD>(exception->m_lOsError),
                  exception->m_strFileName.GetString()};
        exception->Delete();
    } catch (CException* exception) {
        thrown.is_memory = dynamic_cast<CMemoryException*>(exception) != nullptr;
        exception->Delete();
    }
    return thrown;
}

// What the file has from its position on.
inline std::string Read(CFile& file, UINT count = 100) {
    std::string bytes(count, '#');
    bytes.resize(file.Read(bytes.data(), count));
    return bytes;
}

inline HANDLE Open(const std::string& path, DWORD disposition, DWORD access,
                   DWORD attributes = FILE_ATTRIBUTE_NORMAL) {
    SetLastError(0);
    return CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                       disposition, attributes, nullptr);
}

}  // namespace rv_test
