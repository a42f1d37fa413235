#include "XmlParser.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>

#include "../datetime/rvdatetm.h"
#include "../platform/paths.h"
#include "XmlByteRules.h"
#include "XmlFileSource.h"
#include "XmlItems.h"
#include "XmlReport.h"
#include "XmlScan.h"
#include "XmlSections.h"

namespace {

const RVString gTemp_Template = RVString("%s") + rv::kPathSeparator + "ZORTmp_%s.tmp";

constexpr int kReference_Prefix = 7;  // bytes of "FILE://"

// Blocks of items grow to this at most, so that what a large file's items leave free stays small.
constexpr std::size_t kFile_Block = 256 * 1024;

// A sixteenth of a text in memory, whose items are in proportion to it.
std::size_t Text_Block(int length) {
    return std::clamp<std::size_t>(static_cast<std::size_t>(length) / 16, kFile_Block,
                                   std::size_t{8} << 20);
}

// A document in memory. A section's body is its text.
class TextSource : public rv::XmlSource {
public:
    explicit TextSource(const RVString& text) noexcept
        : m_Begin(text.GetString()), m_End(m_Begin + text.GetLength()) {}

    rv::XmlRun At(std::uint64_t offset, std::size_t) override {
        const auto size = static_cast<std::uint64_t>(m_End - m_Begin);
        return {m_Begin + std::min(offset, size), m_End, true};
    }
    std::uint64_t Window() const noexcept override { return 0; }
    void Begin_Body(std::uint64_t) override {}
    void Drop_Body() noexcept override {}
    bool End_Body(std::uint64_t body, std::uint64_t end, rv::XmlByteRules& rules) override {
        rules.Replace_Text({m_Begin + body, static_cast<std::size_t>(end - body)});
        return true;
    }

private:
    const char* m_Begin;
    const char* m_End;
};

// Gives `text` the bytes, behind which as many more can be read as a vector has. A string always
// has room for fifteen bytes and the NUL, so that short texts, which nearly all are, need no call.
void Hand_Out(RVString& text, const char* bytes, std::uint32_t length) {
    constexpr int kRoom = 15;
    static_assert(rv::XmlVector::kSize <= kRoom + 1);
    if (length >= rv::XmlVector::kSize) return text.SetString(bytes, static_cast<int>(length));
    rv::XmlVector::Load(bytes).Store(text.GetBuffer(kRoom));
    text.ReleaseBuffer(static_cast<int>(length));
}

// Seconds since day 0 of the local clock, each handed out once in this process.
std::int64_t Claim_Second(const COleDateTime& now) {
    static std::atomic<std::int64_t> s_Last = 0;
    const std::int64_t present = std::llround(now.m_dt * 86400);
    std::int64_t last = s_Last.load(std::memory_order_relaxed);
    std::int64_t claimed;
    do
        claimed = std::max(present, last + 1);
    while (!s_Last.compare_exchange_weak(last, claimed, std::memory_order_relaxed));
    return claimed;
}

}  // namespace

RVXmlParser::RVXmlParser() noexcept = default;

RVXmlParser::~RVXmlParser() {
    Clear();
}

void RVXmlParser::Clear() noexcept {
    m_Items.reset();
}

void RVXmlParser::Reset() noexcept {
    if (m_Items) m_Items->Reset();
}

bool RVXmlParser::Load_Text(const RVString& document) {
    Clear();
    const int length = document.GetLength();
    m_Items = std::make_unique<rv::XmlItems>(Text_Block(length));
    // No value is longer than the document, and all of them together are not either.
    if (length >= 10) {
        try {
            m_Items->texts.Reserve(static_cast<std::size_t>(length));
        } catch (CMemoryException* error) {
            error->Delete();
            rv::Report_Xml_Error(23, __LINE__);
        }
    }
    TextSource source(document);
    if (!Load(source)) return false;
    m_Items->texts.Free_Extra();
    Reset();
    return true;
}

bool RVXmlParser::Load_File(const RVString& reference) {
    Clear();
    const CString path = reference.Mid(kReference_Prefix);
    CFile file;
    if (!file.Open(path, CFile::modeRead)) {
        rv::Report_Xml_Error(25, __LINE__);
        return false;
    }
    m_Items = std::make_unique<rv::XmlItems>(kFile_Block);
    if (const ULONGLONG length = file.GetLength(); length > 0) {
        rv::XmlFileSource source(file);
        if (!Load(source)) return false;
        // Only a file that was read to its end may go.
        if (source.Length() < length) {
            rv::Report_Xml_Error(25, __LINE__);
            return false;
        }
    }
    file.Close();
    DeleteFileA(path);
    Reset();
    return true;
}

bool RVXmlParser::Load(rv::XmlSource& source) {
    rv::XmlByteRules rules(*m_Items);
    rv::XmlSections sections(source);
    for (std::uint64_t at = 0;;) {
        const rv::XmlRun run = source.At(at, rv::kSectionOpen.size());
        const char* place = run.begin;
        const auto stop = rules.Take(place, run.end, run.last);
        at += static_cast<std::uint64_t>(place - run.begin);
        if (stop == rv::XmlByteRules::Stop::kRefused) return false;
        if (stop == rv::XmlByteRules::Stop::kInput) {
            if (run.last) return true;
            continue;
        }
        const std::uint64_t body = at + rv::kSectionOpen.size();
        if (const auto end = sections.Find_End(body)) {
            if (!source.End_Body(body, *end, rules)) return false;
            at = *end + rv::kSectionClose.size();
        } else {
            // The marker begins a tag, and the byte behind it is lost.
            rules.Begin_Tag();
            at = body + 1;
        }
    }
}

bool RVXmlParser::Next(RVString& name, RVString& value, ULONG& child_count) {
    const rv::XmlItem* const item = m_Items ? m_Items->Current() : nullptr;
    if (!item) return false;
    if (item->Is_Open()) {
        value.SetString("", 0);
    } else {
        Hand_Out(value, m_Items->Current_Value(), item->value_length);
        child_count = item->child_count;
    }
    Hand_Out(name, m_Items->Current_Name(), item->name_length);
    m_Items->Advance();
    return true;
}

bool RVXmlParser::Get_Temp_Filename(RVString& name) {
    RVString path;
    if (Get_Temp_Path(path) != 0) {
        rv::Report_Xml_Error(25, __LINE__);
        return false;
    }
    RVDateTime clock;
    clock.Get_Current_Value(nullptr);
    COleDateTime second;
    clock.Get_Value(second);
    second.m_dt = static_cast<double>(Claim_Second(second)) / 86400;
    clock.Set_Value(second);
    RVString digits;
    clock.Get_Db_Value(digits);
    if (digits.GetLength() != 14) {
        rv::Report_Xml_Error(25, __LINE__);
        return false;
    }
    name.Format(gTemp_Template, path, digits);
    return true;
}

ULONG RVXmlParser::Get_Temp_Path(RVString& path) {
    CString buffer;
    DWORD room = MAX_PATH;
    DWORD length = 0;
    for (;;) {
        length = GetTempPathA(room, buffer.GetBuffer(static_cast<int>(room)));
        if (length == 0) return GetLastError();
        if (length < room) break;
        room = length + 1;
    }
    buffer.ReleaseBuffer(static_cast<int>(length));
    path = buffer;
    if (!path.IsEmpty() && path[path.GetLength() - 1] != rv::kPathSeparator)
        path += rv::kPathSeparator;
    return 0;
}
