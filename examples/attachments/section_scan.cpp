#include "section_scan.h"

namespace attachments {
namespace {

constexpr char kOpening[] = "<![CDATA[";
constexpr std::size_t kOpeningLength = sizeof kOpening - 1;

// The reader counts the depth in 16 bits; sections that come near that are better off as text.
constexpr unsigned kDeepest = 60'000;

}  // namespace

void SectionScan::Open() noexcept {
    m_Opening = 0;
    if (++m_Depth > kDeepest) m_Fits = false;
}

void SectionScan::Close() noexcept {
    if (--m_Depth == 0) {
        m_Fits = false;
        m_Depth = 1;
    }
}

void SectionScan::Add(const char* bytes, std::size_t count) noexcept {
    for (std::size_t index = 0; index < count; ++index) {
        const char byte = bytes[index];
        // The reader looks for markers only as far as the next NUL.
        if (byte == '\0') m_Fits = false;
        if (byte == '>' && m_Brackets == 2) Close();
        m_Brackets = byte != ']' ? 0 : m_Brackets < 2 ? m_Brackets + 1 : 2;
        if (byte == kOpening[m_Opening])
            ++m_Opening;
        else
            m_Opening = byte == kOpening[0] ? 1 : 0;
        if (m_Opening == kOpeningLength) Open();
    }
}

}  // namespace attachments
