// Lists of small images.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "CObject.h"

// Owns a list of images of one size, or none, and ends it when it ends itself. Belongs to one
// thread.
class RVPLATFORM_API CImageList : public CObject {
public:
    CImageList() noexcept = default;
    CImageList(const CImageList&) = delete;
    CImageList& operator=(const CImageList&) = delete;
    ~CImageList() override;

    // The object that owns `images`, in this thread; where there is none, a plain one, which owns
    // nothing and lasts as long as the thread. Null for null. Throws CMemoryException*.
    static CImageList* FromHandle(HIMAGELIST images);

    // An empty list of images of so many pixels; `flags` as of ImageList_Create. FALSE on failure,
    // and for an object that owns a list, which it keeps.
    BOOL Create(int width, int height, UINT flags, int initial, int growth) noexcept;
    // Takes `images` over. FALSE for null, and when it owns a list already.
    BOOL Attach(HIMAGELIST images) noexcept;
    // Gives the list up to the caller; null when there is none.
    HIMAGELIST Detach() noexcept;
    // FALSE when there is none.
    BOOL DeleteImageList() noexcept;
    HIMAGELIST GetSafeHandle() const noexcept { return m_hImageList; }

    HIMAGELIST m_hImageList = nullptr;

private:
    friend class ImageLists;

    CImageList* m_Next = nullptr;
};
