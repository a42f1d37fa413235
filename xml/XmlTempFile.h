// The temporary file that a section's body goes to.
#pragma once

#include <string_view>

#include "../frame/RVString.h"
#include "../platform/mfc/CFile.h"

namespace rv {

// Owns the file until Keep: an object that ends before takes the file with it.
class XmlTempFile {
public:
    XmlTempFile() = default;
    XmlTempFile(const XmlTempFile&) = delete;
    XmlTempFile& operator=(const XmlTempFile&) = delete;
    ~XmlTempFile() { Discard(); }

    // Creates the file under a name that nobody else has. False: it cannot be; reported is only
    // that no name can be had.
    [[nodiscard]] bool Create();
    // Whether the temporary directory can be had; reports nothing.
    [[nodiscard]] static bool Directory_Exists();
    bool Exists() const noexcept { return !m_Name.IsEmpty(); }
    const RVString& Name() const noexcept { return m_Name; }
    // Adds to the file; throws CFileException* when that fails.
    void Write(std::string_view bytes);
    void Close() { m_File.Close(); }
    // Leaves the closed file to whoever knows its name.
    void Keep() noexcept { m_Name.Empty(); }
    void Discard() noexcept;

private:
    RVString m_Name;
    CFile m_File;
};

}  // namespace rv
