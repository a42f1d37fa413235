#include "RVGUIDNode.h"

#include <utility>

// Sees the text in place of HashKey: compilers disagree on exported specialisations as friends.
struct rv::GUIDNodeHash {
    static UINT Of(const RVGUIDNode& node) noexcept {
        UINT hash = 0;
        for (int at = 0; at < node.m_Text.GetLength(); ++at)
            hash = hash * 33 + static_cast<UINT>(static_cast<signed char>(node.m_Text[at]));
        return hash;
    }
};

RVGUIDNode::RVGUIDNode() noexcept = default;

RVGUIDNode::RVGUIDNode(GUID guid, void* pointer) : m_Pointer(pointer) {
    Set_GUID(guid);
}

RVGUIDNode::RVGUIDNode(const RVGUIDNode&) = default;

// The text, which alone can fail, is the first to be copied.
RVGUIDNode& RVGUIDNode::operator=(const RVGUIDNode&) = default;

RVGUIDNode::~RVGUIDNode() = default;

void RVGUIDNode::Set_GUID(GUID guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    m_Text = CString(text);
    m_Guid = guid;
}

GUID RVGUIDNode::Get_GUID() const noexcept {
    return m_Guid;
}

void RVGUIDNode::Set_Ptr(void* pointer) noexcept {
    m_Pointer = pointer;
}

void* RVGUIDNode::Get_Ptr() const noexcept {
    return m_Pointer;
}

int RVGUIDNode::operator==(const RVGUIDNode& other) const noexcept {
    return IsEqualGUID(m_Guid, other.m_Guid) && m_Pointer == other.m_Pointer;
}

template <>
UINT HashKey<RVGUIDNode&>(RVGUIDNode& key) {
    return rv::GUIDNodeHash::Of(key);
}

template <>
BOOL CompareElements<RVGUIDNode, RVGUIDNode>(const RVGUIDNode* element, const RVGUIDNode* wanted) {
    return IsEqualGUID(element->Get_GUID(), wanted->Get_GUID());
}
