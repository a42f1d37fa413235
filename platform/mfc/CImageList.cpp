#include "CImageList.h"

#include <utility>

// The objects of a thread; there are few.
class ImageLists {
public:
    static CImageList* Find(CImageList* at, HIMAGELIST images) noexcept {
        while (at && at->m_hImageList != images)
            at = at->m_Next;
        return at;
    }

    static void Add(CImageList*& first, CImageList& object) noexcept {
        object.m_Next = std::exchange(first, &object);
    }

    static void Remove(CImageList*& first, CImageList& object) noexcept {
        CImageList** at = &first;
        while (*at && *at != &object)
            at = &(*at)->m_Next;
        if (*at) *at = object.m_Next;
    }

    // Ends plain objects, but not what they stand for.
    static void Delete_All(CImageList* at) noexcept {
        while (at) {
            CImageList* const next = at->m_Next;
            at->m_hImageList = nullptr;
            delete std::exchange(at, next);
        }
    }
};

namespace {

thread_local CImageList* t_Owners;

struct PlainLists {
    PlainLists() = default;
    PlainLists(const PlainLists&) = delete;
    PlainLists& operator=(const PlainLists&) = delete;
    ~PlainLists() { ImageLists::Delete_All(first); }

    CImageList* first = nullptr;
};

}  // namespace

CImageList::~CImageList() {
    DeleteImageList();
}

CImageList* CImageList::FromHandle(HIMAGELIST images) {
    static thread_local PlainLists t_Plain;
    if (!images) return nullptr;
    if (CImageList* const owner = ImageLists::Find(t_Owners, images)) return owner;
    if (CImageList* const known = ImageLists::Find(t_Plain.first, images)) return known;
    auto* const plain = new CImageList;
    plain->m_hImageList = images;
    ImageLists::Add(t_Plain.first, *plain);
    return plain;
}

BOOL CImageList::Create(int width, int height, UINT flags, int initial, int growth) noexcept {
    return !m_hImageList && Attach(ImageList_Create(width, height, flags, initial, growth));
}

BOOL CImageList::Attach(HIMAGELIST images) noexcept {
    if (!images || m_hImageList) return FALSE;
    m_hImageList = images;
    ImageLists::Add(t_Owners, *this);
    return TRUE;
}

HIMAGELIST CImageList::Detach() noexcept {
    if (m_hImageList) ImageLists::Remove(t_Owners, *this);
    return std::exchange(m_hImageList, nullptr);
}

BOOL CImageList::DeleteImageList() noexcept {
    HIMAGELIST const images = Detach();
    return images && ImageList_Destroy(images);
}
