#include "XmlByteRules.h"

#include <algorithm>

#include "XmlScan.h"

namespace rv {

namespace {

bool Is_White_Space(char byte) noexcept {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

std::string_view Trimmed(std::string_view text) noexcept {
    while (!text.empty() && Is_White_Space(text.back()))
        text.remove_suffix(1);
    while (!text.empty() && Is_White_Space(text.front()))
        text.remove_prefix(1);
    return text;
}

}  // namespace

XmlByteRules::Stop XmlByteRules::Take(const char*& at, const char* end, bool last) {
    while (at != end) {
        switch (*at) {
            case '\t':
            case '\n':
            case '\r':
                ++at;
                break;
            case '<': {
                if (m_In_Tag) return Stop::kRefused;
                const auto left = static_cast<std::size_t>(end - at);
                if (left < kSectionOpen.size() && !last) return Stop::kInput;
                const std::string_view ahead(at, std::min(left, kSectionOpen.size()));
                if (ahead == kSectionOpen) return Stop::kSection;
                ++at;
                if (ahead.substr(1, 1) == "?") {
                    m_In_Instruction = true;
                    break;
                }
                bool accepted = true;
                at = Take_Whole_Tag(at, end, accepted);
                if (!accepted) return Stop::kRefused;
                break;
            }
            case '>':
                if (!Take_Closing_Bracket()) return Stop::kRefused;
                ++at;
                break;
            default:
                at = Take_Text(at, end);
        }
    }
    return Stop::kInput;
}

// Moves ordinary bytes to the open run that they belong to, whole vectors first.
const char* XmlByteRules::Take_Text(const char* at, const char* end) {
    XmlBytes& bytes = m_In_Tag ? m_Items.names : m_Items.texts;
    while (end - at >= static_cast<std::ptrdiff_t>(XmlVector::kSize)) {
        bytes.Make_Room(XmlVector::kSize);
        const XmlVector vector = XmlVector::Load(at);
        vector.Store(bytes.End());
        const std::uint32_t mask = vector.Specials();
        const std::size_t count =
            mask ? static_cast<std::size_t>(std::countr_zero(mask)) : XmlVector::kSize;
        bytes.Set_End(bytes.End() + count);
        at += count;
        if (mask) return at;
    }
    const char* const special = Find_Special(at, end);
    bytes.Append(at, static_cast<std::size_t>(special - at));
    return special;
}

// A tag that stands in the run as a whole, with nothing to drop, needs no copy.
const char* XmlByteRules::Take_Whole_Tag(const char* at, const char* end, bool& accepted) {
    const char* const special = Find_Special(at, end);
    if (special == end || *special != '>' || special == at || m_In_Instruction) {
        Begin_Tag();
        return at;
    }
    accepted = Take_Tag({at, static_cast<std::size_t>(special - at)});
    return special + 1;
}

bool XmlByteRules::Take_Closing_Bracket() {
    if (m_In_Instruction) {
        m_Items.texts.Drop();
        m_In_Instruction = false;
        return true;
    }
    const std::string_view tag = m_Items.names.Run();
    if (!m_In_Tag || tag.empty()) return false;
    m_In_Tag = false;
    const bool accepted = Take_Tag(tag);
    m_Items.names.Drop();
    return accepted;
}

bool XmlByteRules::Take_Tag(std::string_view tag) {
    if (tag.back() == '/') {
        tag.remove_suffix(1);
        Add_Empty_Element(tag);
    } else if (tag.front() == '/') {
        return End_Element(tag.substr(1));
    } else {
        Start_Element(tag);
    }
    return true;
}

// Only a blank behind the first byte cuts the name.
void XmlByteRules::Start_Element(std::string_view tag) {
    const std::size_t blank = tag.find(' ');
    if (blank != 0) tag = tag.substr(0, blank);
    const std::string_view name = Trimmed(tag);
    XmlItem* const item = Add_Item(name);
    m_Open.push_back({item, m_Last_Name, m_Count + 1});
    m_Count = 0;
}

// Attributes stay in the name, and the text stays for those that follow.
void XmlByteRules::Add_Empty_Element(std::string_view tag) {
    XmlItem* const item = Add_Item(Trimmed(tag));
    item->value_length = static_cast<std::uint32_t>(m_Items.texts.Run().size());
    item->value = m_Items.texts.Share();
    ++m_Count;
}

bool XmlByteRules::End_Element(std::string_view name) {
    if (m_Open.empty()) return false;
    const OpenElement element = m_Open.back();
    m_Open.pop_back();
    if (name != std::string_view(element.name, element.item->name_length)) return false;
    const std::string_view text = m_Items.texts.Run();
    const std::string_view value = Trimmed(text);
    element.item->value_length = static_cast<std::uint32_t>(value.size());
    element.item->value =
        m_Items.texts.Close(static_cast<std::size_t>(value.data() - text.data()), value.size());
    element.item->child_count = m_Count;
    m_Count = element.parent_count;
    return true;
}

XmlItem* XmlByteRules::Add_Item(std::string_view name) {
    m_Items.names.Drop();
    m_Items.names.Append(name.data(), name.size());
    m_Last_Name = m_Items.names.Run().data();
    return m_Items.Add();
}

void XmlByteRules::Replace_Text(std::string_view text) {
    m_Items.texts.Drop();
    m_Items.texts.Append(text.data(), text.size());
}

void XmlByteRules::Begin_Tag() noexcept {
    m_In_Tag = true;
    m_Items.names.Drop();
}

}  // namespace rv
