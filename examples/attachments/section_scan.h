// Whether bytes can stand in a CDATA section as they are.
#pragma once

#include <cstddef>

namespace attachments {

// Takes bytes in pieces and counts section markers as the reader of a document does: the section
// around the bytes must end where they end and nowhere before.
class SectionScan {
public:
    void Add(const char* bytes, std::size_t count) noexcept;
    // Whether everything so far, and nothing less, is a section's body.
    bool Fits() const noexcept { return m_Fits && m_Depth == 1; }

private:
    void Open() noexcept;
    void Close() noexcept;

    unsigned m_Depth = 1;
    bool m_Fits = true;
    std::size_t m_Opening = 0;   // how much of an opening marker came last
    std::size_t m_Brackets = 0;  // how many closing brackets came last, up to two
};

}  // namespace attachments
