// The state machine that turns the bytes of a document into items.
#pragma once

#include <string_view>
#include <vector>

#include "XmlItems.h"
#include "XmlScan.h"

namespace rv {

inline constexpr std::string_view kSectionOpen = "<![CDATA[";
inline constexpr std::string_view kSectionClose = "]]>";

// One parse. It is fed runs of bytes, in order; where they come from, and what becomes of a
// section, is the caller's affair. Throws CMemoryException* when the items outgrow the memory.
class XmlByteRules {
public:
    enum class Stop {
        kInput,    // the run is used up, but for the beginning of a marker that it may cut
        kSection,  // a section's opening marker stands here
        kRefused   // the document is refused
    };

    explicit XmlByteRules(XmlItems& items) noexcept : m_Items(items) {}
    XmlByteRules(const XmlByteRules&) = delete;
    XmlByteRules& operator=(const XmlByteRules&) = delete;

    // Takes the bytes from `at` up to `end`, and moves `at` behind those it took. `last` says that
    // none follow; else a run of at least a marker's length always gets on.
    Stop Take(const char*& at, const char* end, bool last);

    // A section that ended: its body, or what stands for it, replaces the text gathered so far.
    void Replace_Text(std::string_view text);
    // A section without an end: its marker begins a tag.
    void Begin_Tag() noexcept;

private:
    struct OpenElement {
        XmlItem* item;
        const char* name;
        std::uint32_t parent_count;  // children of its parent once it has ended
    };

    const char* Take_Text(const char* at, const char* end);
    bool Take_Tag_At(const char*& at, const char* end);
    bool Take_Short_Tag(const char* tag, std::size_t length, XmlVector head);
    bool Take_Closing_Bracket();
    bool Take_Tag(std::string_view tag);
    void Start_Element(std::string_view tag);
    void Add_Empty_Element(std::string_view tag);
    bool End_Element(std::string_view name);
    void Name_Tag(std::string_view name);
    void Open_Named();
    void Close_Innermost();

    XmlItems& m_Items;
    bool m_In_Tag = false;  // its bytes are the open run of the names
    bool m_In_Instruction = false;
    std::vector<OpenElement, HeapAllocator<OpenElement>> m_Open;
    std::uint32_t m_Count = 0;  // children of the innermost open element so far
};

}  // namespace rv
