// A GUID as the key of an application's map.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CMap.h"
#include "../platform/mfc/CObject.h"
#include "../platform/mfc/CString.h"
#include "../platform/winapi.h"

namespace rv {
struct GUIDNodeHash;
}  // namespace rv

// A GUID with a pointer that the node carries and never looks behind; what it points to belongs to
// somebody else. A CMap takes nodes as its keys, and nodes with the same GUID as the same key:
//
//     CMap<RVGUIDNode, RVGUIDNode&, int, int> map;
//
// Before Set_GUID the GUID of a node is all zeros, but its hash is 0: set it before it is a key.
// What needs memory throws CMemoryException* when there is none, and leaves the node as it was. A
// node may be read by several threads at once.
class RVUTILS_API RVGUIDNode : public CObject {
public:
    RVGUIDNode() noexcept;
    // With both. The pointer is kept as it is, and never followed.
    RVGUIDNode(GUID guid, void* pointer);
    RVGUIDNode(const RVGUIDNode& other);
    RVGUIDNode& operator=(const RVGUIDNode& other);
    ~RVGUIDNode() override;

    // Keeps the pointer.
    void Set_GUID(GUID guid);
    GUID Get_GUID() const noexcept;
    void Set_Ptr(void* pointer) noexcept;
    void* Get_Ptr() const noexcept;

    // 1 when both GUID and pointer are equal, else 0. A map's CompareElements regards the GUID
    // alone.
    int operator==(const RVGUIDNode& other) const noexcept;

private:
    friend struct rv::GUIDNodeHash;

    CString m_Text;  // of the GUID, 38 characters; empty before Set_GUID
    GUID m_Guid = {};
    void* m_Pointer = nullptr;
};

// The hash of the GUID's text: from 0, times 33 and plus the character, in 32 bits.
template <>
RVUTILS_API UINT HashKey<RVGUIDNode&>(RVGUIDNode& key);

// 1 when the GUIDs are equal, else 0.
template <>
RVUTILS_API BOOL CompareElements<RVGUIDNode, RVGUIDNode>(const RVGUIDNode* element,
                                                         const RVGUIDNode* wanted);
