// Links from ids to ids.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CList.h"
#include "../platform/winapi.h"
#include "IdIndex.h"

// Links from an id of 32 bits, the key, to any number of others, in the order in which they were
// added. A link has one direction; the same one can be there several times. Any id will do: 0, and
// a link from an id to itself.
//
// Time: constant for Add_Link, and for Get_Ref_List and Remove_Link beside what they do for each of
// the key's links, however many keys there are. Memory: 80 to 130 bytes a key, four links included,
// and 4 to 8 for each further link; what a key once took it keeps until it goes.
//
// Reports go to pProgrammer_Error, file "DwordCrossRef":
//   23  Add_Link has no memory for the links of a new key; the link is not stored
// Any other operation that needs memory throws CMemoryException* when there is none, and so does
// Add_Link for all but that. The links are then as they were.
//
// An object has no lock: threads that share one guard it themselves.
class RVUTILS_API RVDwordCrossRef {
public:
    RVDwordCrossRef() noexcept;
    RVDwordCrossRef(const RVDwordCrossRef&) = delete;
    RVDwordCrossRef& operator=(const RVDwordCrossRef&) = delete;
    virtual ~RVDwordCrossRef();

    // Appends a link to the key's; the same one may be there several times.
    void Add_Link(ULONG key, ULONG referenced_id);
    // Replaces the contents of `list` with the key's referenced ids. False, and an empty list, for
    // a key without links; the list is empty, too, where there is no memory for it.
    bool Get_Ref_List(ULONG key, CList<ULONG, ULONG>& list);
    // Removes the first of the key's links to that id. Nothing happens where there is none.
    void Remove_Link(ULONG key, ULONG referenced_id);
    // Gives the memory back, too.
    void Remove_All_Links() noexcept;

private:
    // The referenced ids of one key: those in a block of memory from `first` to before `last`. It
    // stands in the table itself, so that a new link touches nothing of the block but its place.
    struct Links {
        ULONG* begin() const noexcept { return ids + first; }
        ULONG* end() const noexcept { return ids + last; }
        bool Full() const noexcept;
        void Make_Room();
        void Remove(ULONG* id) noexcept;

        std::uint32_t first = 0;
        std::uint32_t last = 0;
        ULONG* ids = nullptr;
    };

    void Add_Key(ULONG key, ULONG referenced_id);

    rv::IdTable<Links> m_Links;
};
