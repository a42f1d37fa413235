#include "XmlFileSource.h"

#include <algorithm>
#include <cstring>

#include "XmlByteRules.h"
#include "XmlReport.h"

namespace rv {

namespace {

constexpr std::size_t kBlock = 1048576;

// After a jump the next marker may be near, and so may be the next jump.
constexpr std::size_t kFirst_Read = 4096;

}  // namespace

XmlFileSource::XmlFileSource(CFile& file)
    : m_File(file), m_Block(static_cast<char*>(Heap_Allocate(kBlock))), m_Next_Read(kBlock) {
    if (!m_Block) AfxThrowMemoryException();
}

// A search block less the bytes by which it overlaps the next one.
std::uint64_t XmlFileSource::Window() const noexcept {
    return 1048576 - 100;
}

XmlRun XmlFileSource::At(std::uint64_t offset, std::size_t least) {
    if (offset < m_Block_At || offset + least > Block_End()) Move_To(offset);
    while (offset + least > Block_End() && !m_At_End)
        Read_On(least);
    const char* const end = m_Block.get() + m_Size;
    const std::size_t skipped =
        static_cast<std::size_t>(std::min<std::uint64_t>(offset - m_Block_At, m_Size));
    return {m_Block.get() + skipped, end, m_At_End};
}

// Makes the block begin at `offset`, with what it has of the bytes there.
void XmlFileSource::Move_To(std::uint64_t offset) {
    while (m_Saving && offset > Block_End() && !m_At_End) {
        Keep_From(Block_End());
        Read_On(kBlock);
    }
    if (offset >= m_Block_At && offset <= Block_End()) {
        Keep_From(offset);
    } else if (!(m_At_End && offset > Block_End())) {
        m_File.Seek(static_cast<LONGLONG>(offset), CFile::begin);
        m_Block_At = offset;
        m_Size = 0;
        m_At_End = false;
        m_Next_Read = kFirst_Read;
    }
}

void XmlFileSource::Keep_From(std::uint64_t offset) noexcept {
    if (m_Saving) Save_Leaving(offset);
    const auto gone = static_cast<std::size_t>(offset - m_Block_At);
    m_Size -= gone;
    std::memmove(m_Block.get(), m_Block.get() + gone, m_Size);
    m_Block_At = offset;
}

void XmlFileSource::Read_On(std::size_t least) {
    const std::size_t wanted = std::min(std::max(least, m_Next_Read), kBlock - m_Size);
    const std::size_t got = m_File.Read(m_Block.get() + m_Size, static_cast<UINT>(wanted));
    m_Size += got;
    m_At_End = got < wanted;
    m_Next_Read = std::min(m_Next_Read * 2, kBlock);
    if (got > 0) m_Length = std::max(m_Length, Block_End());
}

void XmlFileSource::Begin_Body(std::uint64_t body) {
    m_Saving = true;
    m_Saved = body;
}

void XmlFileSource::Drop_Body() noexcept {
    m_Saving = false;
    m_Body.Discard();
}

// The bytes before `offset` are about to leave the block. What goes wrong here is found again, and
// told, once the section is known to be one.
void XmlFileSource::Save_Leaving(std::uint64_t offset) noexcept {
    if (offset <= m_Saved) return;
    try {
        if (m_Body.Exists() || (XmlTempFile::Directory_Exists() && m_Body.Create())) {
            m_Body.Write({m_Block.get() + (m_Saved - m_Block_At),
                          static_cast<std::size_t>(offset - m_Saved)});
            m_Saved = offset;
            return;
        }
    } catch (CException* error) {
        error->Delete();
    }
    Drop_Body();
}

bool XmlFileSource::End_Body(std::uint64_t body, std::uint64_t end, XmlByteRules& rules) {
    m_Saving = false;
    if (!m_Body.Exists()) {
        m_Saved = body;
        if (!m_Body.Create()) {
            Report_Xml_Error(25, __LINE__);
            return false;
        }
    }
    if (!Save_Rest(end)) {
        m_Body.Discard();
        Report_Xml_Error(25, __LINE__);
        return false;
    }
    m_Body.Close();
    RVString reference("FILE://");
    reference += m_Body.Name();
    rules.Replace_Text({reference.GetString(), static_cast<std::size_t>(reference.GetLength())});
    m_Body.Keep();
    return true;
}

bool XmlFileSource::Save_Rest(std::uint64_t end) {
    while (m_Saved != end) {
        const XmlRun run = At(m_Saved, 1);
        if (run.Size() == 0) return false;
        const std::size_t count =
            static_cast<std::size_t>(std::min<std::uint64_t>(run.Size(), end - m_Saved));
        m_Body.Write({run.begin, count});
        m_Saved += count;
    }
    return true;
}

}  // namespace rv
