// A document on disk, read through one block, with the bodies of its sections in temporary files.
#pragma once

#include "../platform/heap.h"
#include "../platform/mfc/CFile.h"
#include "XmlSource.h"
#include "XmlTempFile.h"

namespace rv {

// Reads `file`, which outlives it. Passes on what the files throw.
//
// A body is written while its end is searched, as its bytes leave the block, so the document is
// read once. Should the section turn out to have no end, the file goes again, and what failed about
// it is forgotten, but for reports that the memory for a name was exhausted; only a body that is
// one is written in earnest.
class XmlFileSource : public XmlSource {
public:
    explicit XmlFileSource(CFile& file);

    XmlRun At(std::uint64_t offset, std::size_t least) override;
    std::uint64_t Window() const noexcept override;
    void Begin_Body(std::uint64_t body) override;
    void Drop_Body() noexcept override;
    bool End_Body(std::uint64_t body, std::uint64_t end, XmlByteRules& rules) override;

    // How many bytes the document had when its end was seen.
    std::uint64_t Length() const noexcept { return m_Length; }

private:
    std::uint64_t Block_End() const noexcept { return m_Block_At + m_Size; }
    void Move_To(std::uint64_t offset);
    void Keep_From(std::uint64_t offset) noexcept;
    void Read_On(std::size_t least);
    void Save_Leaving(std::uint64_t offset) noexcept;
    bool Save_Rest(std::uint64_t end);

    CFile& m_File;
    HeapText m_Block;
    std::uint64_t m_Block_At = 0;  // offset of the block's first byte
    std::size_t m_Size = 0;        // bytes in it
    std::size_t m_Next_Read;       // how many to read next
    bool m_At_End = false;         // the document ends with the block
    std::uint64_t m_Length = 0;

    XmlTempFile m_Body;
    bool m_Saving = false;      // bytes that leave the block go to the body
    std::uint64_t m_Saved = 0;  // offset of the first one that has not
};

}  // namespace rv
