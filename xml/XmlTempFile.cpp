#include "XmlTempFile.h"

#include "XmlParser.h"

namespace rv {

bool XmlTempFile::Create() {
    RVString name;
    for (;;) {
        if (!RVXmlParser::Get_Temp_Filename(name)) return false;
        // Never through a link, and private to the user where the directory is not.
        const HANDLE file = CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_TEMPORARY, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            m_File.m_hFile = file;
            m_Name = static_cast<RVString&&>(name);
            return true;
        }
        // Another process has the name of this second; there is a next one.
        if (GetLastError() != ERROR_FILE_EXISTS) return false;
    }
}

bool XmlTempFile::Directory_Exists() {
    RVString path;
    return RVXmlParser::Get_Temp_Path(path) == 0;
}

void XmlTempFile::Write(std::string_view bytes) {
    m_File.Write(bytes.data(), static_cast<UINT>(bytes.size()));
}

void XmlTempFile::Discard() noexcept {
    if (!Exists()) return;
    m_File.Abort();
    DeleteFileA(m_Name);
    m_Name.Empty();
}

}  // namespace rv
