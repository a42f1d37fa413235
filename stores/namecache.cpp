#include "namecache.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "../frame/RVDev.h"
#include "../platform/mfc/CMap.h"

namespace {

constexpr unsigned int kNotReplaced = 16;
constexpr unsigned int kNoScan = 25;

constexpr UINT kBuckets = 17;

void Report(unsigned int code, ULONG line) {
    pProgrammer_Error(code, "namecache", line, true);
}

// Takes the cache's lock for one operation.
class Hold {
public:
    explicit Hold(CSingleLock& lock) : m_Lock(lock) { m_Lock.Lock(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() { m_Lock.Unlock(); }

private:
    CSingleLock& m_Lock;
};

std::string_view View(const RVString& name) {
    return {name.GetString(), static_cast<std::size_t>(name.GetLength())};
}

// How many bytes all names begin with alike.
template <class Associations>
std::size_t Common_Length(const Associations& associations) {
    std::string_view common = View(associations.front().name);
    for (const auto& association : associations) {
        const std::string_view name = View(association.name);
        const auto ends = std::mismatch(common.begin(), common.end(), name.begin(), name.end());
        common = common.substr(0, static_cast<std::size_t>(ends.first - common.begin()));
    }
    return common.size();
}

// The eight bytes from `first` on as a number that orders as they do; bytes behind the end count
// as 0.
std::uint64_t Lead(const RVString& name, std::size_t first) {
    const std::string_view rest = View(name).substr(first, 8);
    std::uint64_t lead = 0;
    for (std::size_t at = 0; at < 8; ++at)
        lead = lead << 8 | (at < rest.size() ? static_cast<unsigned char>(rest[at]) : 0U);
    return lead;
}

}  // namespace

// What a scan is sorted by; most comparisons end with the lead.
struct RVNameCache::ScanKey {
    bool operator<(const ScanKey& other) const {
        if (lead != other.lead) return lead < other.lead;
        const int order = association->name.Compare(other.association->name);
        if (order != 0) return order < 0;
        if (bucket != other.bucket) return bucket < other.bucket;
        return association->age > other.association->age;
    }

    std::uint64_t lead;
    UINT bucket;
    const Association* association;
};

RVNameCache::RVNameCache() : m_ScanLock(&m_Lock) {}

RVNameCache::~RVNameCache() = default;

void RVNameCache::Add_Association(ULONG id, RVString& name) {
    const Hold hold(m_ScanLock);
    if (const std::uint32_t* const found = m_Index.Find(id)) {
        m_Associations[*found].name = name;
        return;
    }
    m_Index.Reserve_One();
    m_Associations.push_back({name, id, m_NextAge});
    m_Index.Set(id, static_cast<std::uint32_t>(m_Associations.size() - 1));
    ++m_NextAge;
}

void RVNameCache::Remove_Association(ULONG id) {
    const Hold hold(m_ScanLock);
    const std::uint32_t* const found = m_Index.Find(id);
    if (!found) return;
    const std::uint32_t place = *found;
    m_Index.Erase(id);
    if (place + 1 < m_Associations.size()) {
        m_Associations[place] = std::move(m_Associations.back());
        m_Index.Set(m_Associations[place].id, place);
    }
    m_Associations.pop_back();
}

void RVNameCache::Remove_All() {
    const Hold hold(m_ScanLock);
    m_Associations = Items<Association>();
    m_Index.Clear();
}

int RVNameCache::Get_Association(ULONG id, RVString& name) {
    return Lookup(id, name);
}

int RVNameCache::Lookup(ULONG id, RVString& name) {
    const Hold hold(m_ScanLock);
    const std::uint32_t* const found = m_Index.Find(id);
    if (!found) return 0;
    name = m_Associations[*found].name;
    return 1;
}

RVNameCache::Items<RVNameCache::ScanKey> RVNameCache::Sorted_Keys() const {
    Items<ScanKey> keys;
    if (m_Associations.empty()) return keys;
    keys.reserve(m_Associations.size());
    const std::size_t common = Common_Length(m_Associations);
    for (const Association& association : m_Associations)
        keys.push_back({Lead(association.name, common), HashKey<ULONG>(association.id) % kBuckets,
                        &association});
    std::sort(keys.begin(), keys.end());
    return keys;
}

void RVNameCache::Start_Scan() {
    m_ScanLock.Lock();
    m_Scanner = std::this_thread::get_id();
    m_Cursor = 0;
    m_ScanList = Items<RVNameItem>();
    Items<RVNameItem> items;
    items.reserve(m_Associations.size());
    for (const ScanKey& key : Sorted_Keys())
        items.push_back({key.association->id, key.association->name});
    m_ScanList = std::move(items);
}

int RVNameCache::Get_Next_Item(ULONG& id, RVString& name) {
    if (!m_ScanLock.IsLocked()) Report(kNoScan, __LINE__);
    if (m_Cursor == m_ScanList.size()) return 0;
    const RVNameItem& item = m_ScanList[m_Cursor];
    name = item.name;
    id = item.id;
    ++m_Cursor;
    return 1;
}

void RVNameCache::Stop_Scan() {
    // The mark alone does not tell: another thread may have set it.
    if (m_Scanner != std::this_thread::get_id()) return;
    m_Scanner = std::thread::id();
    m_ScanLock.Unlock();
}

void RVNameCache::Load_Cache() {
    Report(kNotReplaced, __LINE__);
}
