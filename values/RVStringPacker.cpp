#include "RVStringPacker.h"

namespace {

constexpr char kDelimiter = '\\';

// The parts of a text between delimiters, one after the other.
template <class Delimiter>
class Parts {
public:
    Parts(const CString& text, const Delimiter& delimiter, int delimiter_length)
        : m_Text(text), m_Delimiter(delimiter), m_DelimiterLength(delimiter_length) {
        Find_End();
    }

    // Moves on to the next part; false behind the last one.
    bool Next() {
        if (m_Last) return false;
        m_Start = m_End + m_DelimiterLength;
        Find_End();
        return true;
    }
    void Copy_To(CString& part) const {
        part.SetString(m_Text.GetString() + m_Start, m_End - m_Start);
    }

private:
    void Find_End() {
        // An empty delimiter would be found everywhere.
        const int found = m_DelimiterLength > 0 ? m_Text.Find(m_Delimiter, m_Start) : -1;
        m_Last = found < 0;
        m_End = m_Last ? m_Text.GetLength() : found;
    }

    const CString& m_Text;
    const Delimiter& m_Delimiter;
    const int m_DelimiterLength;
    int m_Start = 0;
    int m_End = 0;
    bool m_Last = false;
};

}  // namespace

RVStringPacker::RVStringPacker() noexcept = default;

RVStringPacker::RVStringPacker(const RVString& packed)
    : m_Packed(packed), m_Has_Items(!packed.IsEmpty()) {}

RVStringPacker::RVStringPacker(const RVStringPacker&) = default;

RVStringPacker& RVStringPacker::operator=(const RVStringPacker&) = default;

RVStringPacker::~RVStringPacker() = default;

void RVStringPacker::Empty() noexcept {
    m_Packed.Empty();
    m_Has_Items = false;
}

void RVStringPacker::Set(const RVString& packed) {
    m_Packed = packed;
    m_Has_Items = !packed.IsEmpty();
}

void RVStringPacker::Pack(const RVString& item, RVString delimiter) {
    const int length = m_Packed.GetLength();
    try {
        if (m_Has_Items) m_Packed += delimiter;
        m_Packed += item;
    } catch (...) {
        m_Packed.ReleaseBuffer(length);
        throw;
    }
    m_Has_Items = true;
}

void RVStringPacker::Unpack(CStringArray& items, RVString delimiter) const {
    items.SetSize(0);
    if (!m_Has_Items) return;
    // Counted first, so that no text moves while the array grows.
    INT_PTR count = 1;
    for (Parts parts(m_Packed, delimiter, delimiter.GetLength()); parts.Next();)
        ++count;
    items.SetSize(count);
    Parts parts(m_Packed, delimiter, delimiter.GetLength());
    try {
        for (INT_PTR index = 0; index < count; ++index, parts.Next())
            parts.Copy_To(items[index]);
    } catch (...) {
        items.SetSize(0);
        throw;
    }
}

RVString RVStringPacker::operator[](int index) const {
    RVString item;
    if (index < 0) return item;
    Parts parts(m_Packed, kDelimiter, 1);
    while (index > 0 && parts.Next())
        --index;
    if (index == 0) parts.Copy_To(item);
    return item;
}

RVStringPacker::operator RVString() const {
    return m_Packed;
}
