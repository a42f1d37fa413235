// A list of texts in one.
#pragma once

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/mfc/CStringArray.h"

// A list of texts held as one text, so that it can be stored where only one fits: the items, with a
// delimiter between them and nothing else.
//
// Nothing is escaped and the delimiter is not stored. So the caller's duty is an item without the
// delimiter, which would come back as two, and the same delimiter for Pack and Unpack; operator[]
// goes by the backslash. No item and one empty item have the same text: that an empty text was
// packed is known to the object and its copies alone.
//
// What needs memory throws CMemoryException* when there is none, as for a text of more than
// 2,147,483,646 bytes, and leaves the object as it was. An object may be read by several threads at
// once.
class RVUTILS_API RVStringPacker {
public:
    RVStringPacker() noexcept;
    // With a packed text, as Set.
    RVStringPacker(const RVString& packed);
    RVStringPacker(const RVStringPacker& other);
    RVStringPacker& operator=(const RVStringPacker& other);
    virtual ~RVStringPacker();

    // Takes all items away.
    void Empty() noexcept;
    // Takes a packed text. The empty one holds no item.
    void Set(const RVString& packed);

    // Appends an item, with the delimiter before it where there is an item already. Time in
    // proportion to what is added. An empty delimiter joins the items for good.
    void Pack(const RVString& item, RVString delimiter);
    // Replaces the array's contents with the items. An empty delimiter, and one that does not
    // occur, give the whole text as one item. Without memory for an item the array ends empty.
    void Unpack(CStringArray& items, RVString delimiter) const;

    // The item at `index`, from 0, of a text packed with the backslash; the empty text for an index
    // outside of the list. Reads the text up to the item's end, so for a whole list call Unpack.
    RVString operator[](int index) const;
    // The packed text.
    operator RVString() const;

private:
    RVString m_Packed;
    bool m_Has_Items = false;
};
