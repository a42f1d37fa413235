#include "XmlByteRules.h"

#include <algorithm>

namespace rv {

namespace {

constexpr int kVector = static_cast<int>(XmlVector::kSize);

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
                if (!Take_Tag_At(at, end)) return Stop::kRefused;
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
    while (end - at >= kVector) {
        const XmlVector vector = XmlVector::Load(at);
        const std::uint32_t specials = vector.Specials();
        const int count = specials ? std::countr_zero(specials) : kVector;
        bytes.Append_Vector(vector, static_cast<std::size_t>(count));
        at += count;
        if (specials) return at;
    }
    const char* const special = Find_Special(at, end);
    bytes.Append(at, static_cast<std::size_t>(special - at));
    return special;
}

// Takes the tag behind a "<". One that stands in the run as a whole, with nothing to drop in it,
// needs no copy; of another one the bytes are gathered.
bool XmlByteRules::Take_Tag_At(const char*& at, const char* end) {
    const char* special = at;
    if (end - at > kVector && !m_In_Instruction) {
        const XmlVector head = XmlVector::Load(at);
        const std::uint32_t specials = head.Specials();
        special += specials ? std::countr_zero(specials) : kVector;
        if (*special == '>' && special != at) {
            const char* const tag = at;
            at = special + 1;
            return Take_Short_Tag(tag, static_cast<std::size_t>(special - tag), head);
        }
    }
    special = Find_Special(special, end);
    if (special == end || *special != '>' || special == at || m_In_Instruction) {
        Begin_Tag();
        return true;
    }
    const std::string_view tag(at, static_cast<std::size_t>(special - at));
    at = special + 1;
    return Take_Tag(tag);
}

// A tag of up to a vector, which `head` holds with what follows; nearly all of them are plain names
// or their end tags. One more byte than a vector stands at `tag`.
bool XmlByteRules::Take_Short_Tag(const char* tag, std::size_t length, XmlVector head) {
    const auto low_bits = [](std::size_t count) { return (std::uint32_t{1} << count) - 1; };
    if (tag[length - 1] == '/') return Take_Tag({tag, length});
    if (tag[0] == '/') {
        if (m_Open.empty()) return false;
        const OpenElement& element = m_Open.back();
        const std::uint32_t wanted = low_bits(length - 1);
        const std::uint32_t same = XmlVector::Load(tag + 1).Equal(XmlVector::Load(element.name));
        if (element.item->name_length != length - 1 || (same & wanted) != wanted) return false;
        Close_Innermost();
        return true;
    }
    const std::uint32_t blanks = head.Equal(' ') & low_bits(length);
    const std::size_t name = blanks ? static_cast<std::size_t>(std::countr_zero(blanks)) : length;
    if (name == 0 || Is_White_Space(tag[0]) || Is_White_Space(tag[name - 1]))
        return Take_Tag({tag, length});
    m_Items.names.Append_Vector(head, name);
    Open_Named();
    return true;
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
        Add_Empty_Element(tag.substr(0, tag.size() - 1));
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
    Name_Tag(blank == 0 ? tag : tag.substr(0, blank));
    Open_Named();
}

// Attributes stay in the name, and the text stays for those that follow.
void XmlByteRules::Add_Empty_Element(std::string_view tag) {
    Name_Tag(tag);
    XmlItem* const item = m_Items.Add();
    item->value_length = static_cast<std::uint32_t>(m_Items.texts.Run().size());
    item->value = m_Items.texts.Share();
    ++m_Count;
}

bool XmlByteRules::End_Element(std::string_view name) {
    if (m_Open.empty()) return false;
    const OpenElement& element = m_Open.back();
    if (name != std::string_view(element.name, element.item->name_length)) return false;
    Close_Innermost();
    return true;
}

// Makes the trimmed name the open run of the names. It may stand in that run already.
void XmlByteRules::Name_Tag(std::string_view name) {
    name = Trimmed(name);
    m_Items.names.Drop();
    m_Items.names.Append(name.data(), name.size());
}

// Opens the element whose name is the open run of the names.
void XmlByteRules::Open_Named() {
    const std::string_view name = m_Items.names.Run();
    XmlItem* const item = m_Items.Add();
    m_Open.push_back({item, name.empty() ? XmlBytes::kNothing : name.data(), m_Count + 1});
    m_Count = 0;
}

void XmlByteRules::Close_Innermost() {
    const OpenElement element = m_Open.back();
    m_Open.pop_back();
    const std::string_view text = m_Items.texts.Run();
    const std::string_view value = Trimmed(text);
    XmlItem& item = *element.item;
    item.value_length = static_cast<std::uint32_t>(value.size());
    item.value =
        m_Items.texts.Close(static_cast<std::size_t>(value.data() - text.data()), value.size());
    item.child_count = m_Count;
    m_Count = element.parent_count;
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
