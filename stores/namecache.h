// Names by id, for a whole process.
#pragma once

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/mfc/Allocation.h"
#include "../platform/mfc/CSingleLock.h"
#include "IdIndex.h"

// The names that belong to ids of 32 bits, handed out by id, and in a scan over all of them in
// ascending order of name. Any id and any name will do, 0 and the empty text included. An
// application derives its own cache from this class, with a Load_Cache that fills it.
//
// Several threads may use one cache. It has one lock, for which every operation but Get_Next_Item,
// Stop_Scan and Load_Cache waits without limit. A scan holds it from Start_Scan to Stop_Scan: it
// sees the cache as Start_Scan found it, and everybody else waits, so each Start_Scan needs its
// Stop_Scan. The scan belongs to the thread that started it, which calls nothing but Get_Next_Item
// and Stop_Scan meanwhile: any other operation would end the scan's hold on the lock.
//
// Time: constant for one id, however many there are; for Start_Scan that of sorting n names, n log
// n comparisons, and a copy of each. Memory: about 70 bytes an id beside a name of more than 15
// bytes, and as much again for the list of the last scan.
//
// Reports go to pProgrammer_Error, file "namecache":
//   16  Load_Cache is not replaced
//   25  Get_Next_Item outside of a scan
// What needs memory throws CMemoryException* when there is none, with the cache as it was;
// Start_Scan then still holds the lock, and Stop_Scan releases it.
class RVUTILS_API RVNameCache {
public:
    // An association.
    struct RVNameItem {
        ULONG id;       // of a fresh one, without a defined value
        RVString name;  // what belongs to it
    };

    RVNameCache();
    RVNameCache(const RVNameCache&) = delete;
    RVNameCache& operator=(const RVNameCache&) = delete;
    // Ends a scan that is still open.
    virtual ~RVNameCache();

    // Stores a copy of the name for the id, in place of one that is there already.
    void Add_Association(ULONG id, RVString& name);
    // Nothing happens for an id that is not there.
    void Remove_Association(ULONG id);
    // The items of the last scan stay.
    void Remove_All();
    // 1 with the name of the id; 0, with `name` as it was, for an id that is not there. Is Lookup,
    // until a derived cache does more.
    virtual int Get_Association(ULONG id, RVString& name);

    // Begins a scan: ascending by CString::Compare of the names. Equal names come in the order in
    // which a table of 17 buckets gives them up: by bucket of the id's hash, in it the id that was
    // added last before the others.
    void Start_Scan();
    // 1 with the next item; 0, with the arguments as they were, behind the last one. Outside of a
    // scan it reports code 25 and goes on with what the last one left.
    virtual int Get_Next_Item(ULONG& id, RVString& name);
    // Nothing happens where the calling thread has no scan.
    void Stop_Scan();

    // Fills the cache, in derived caches. This one reports code 16; no operation calls it.
    virtual void Load_Cache();

protected:
    // As Get_Association of this class.
    int Lookup(ULONG id, RVString& name);

private:
    struct Association {
        RVString name;
        ULONG id;
        ULONGLONG age;  // grows with each new id
    };
    template <class T>
    using Items = std::vector<T, rv::HeapAllocator<T>>;

    struct ScanKey;

    Items<ScanKey> Sorted_Keys() const;

    Items<Association> m_Associations;
    rv::IdIndex m_Index;  // places in m_Associations
    ULONGLONG m_NextAge = 0;
    std::size_t m_Cursor = 0;  // in m_ScanList
    Items<RVNameItem> m_ScanList;
    CCriticalSection m_Lock;
    CSingleLock m_ScanLock;
    std::atomic<std::thread::id> m_Scanner{};  // the thread with the scan
};
