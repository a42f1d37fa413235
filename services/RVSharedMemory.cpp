#include "RVSharedMemory.h"

#include <cstring>

#include "../platform/mfc/Allocation.h"
#include "../platform/mfc/CMutex.h"

namespace {

constexpr char kMutexName[] = "RVSharedMemory";
constexpr char kBoxTitle[] = "RVDEBUG";

// Takes over what `release` lets go of. Null for null and without memory.
template <class Release>
std::shared_ptr<void> Share(void* thing, Release release) noexcept {
    if (!thing) return nullptr;
    try {
        return {thing, release, rv::HeapAllocator<void*>()};
    } catch (CMemoryException* exception) {
        exception->Delete();
        return nullptr;
    }
}

std::shared_ptr<void> Share_Mapping(HANDLE mapping) noexcept {
    return Share(mapping, [](HANDLE handle) { CloseHandle(handle); });
}

std::size_t Size_Of(const void* view) noexcept {
    MEMORY_BASIC_INFORMATION information;
    return VirtualQuery(view, &information, sizeof information) != 0 ? information.RegionSize : 0;
}

bool Copy(void* target, const void* source, std::size_t count) {
    CMutex mutex(FALSE, kMutexName, nullptr);
    if (!mutex.Lock()) return false;
    if (count > 0) std::memcpy(target, source, count);
    mutex.Unlock();
    return true;
}

}  // namespace

RVSharedMemory::RVSharedMemory(bool quiet) noexcept : m_IsQuiet(quiet) {}

RVSharedMemory::RVSharedMemory(const RVSharedMemory&) noexcept = default;

RVSharedMemory& RVSharedMemory::operator=(const RVSharedMemory& other) noexcept {
    const RVSharedMemory before = *this;  // let go of at the end, in the order of the destructor
    m_View = other.m_View;
    m_Mapping = other.m_Mapping;
    m_Size = other.m_Size;
    m_IsQuiet = other.m_IsQuiet;
    m_Room = other.m_Room;
    return *this;
}

RVSharedMemory::~RVSharedMemory() {
    Let_Go();
}

bool RVSharedMemory::Create(const char* name, ULONG size) {
    Let_Go();
    m_Size = size;
    m_Mapping = Share_Mapping(
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size, name));
    if (!m_Mapping) return Fail("Cannot create shared memory");
    if (!Map() || m_Room < size) {
        Let_Go();
        return Fail("Cannot map shared memory");
    }
    std::memset(m_View.get(), 0, size);
    return true;
}

bool RVSharedMemory::Open(const char* name) {
    Let_Go();
    m_Size = 0;
    m_Mapping = Share_Mapping(OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, name));
    if (!m_Mapping) return Fail("Cannot open shared memory");
    Map();
    return true;
}

bool RVSharedMemory::Read(void* buffer, ULONG count) {
    return count <= m_Room && m_View && Copy(buffer, m_View.get(), count);
}

bool RVSharedMemory::Write(const void* buffer, ULONG count) {
    return count <= m_Room && m_View && Copy(m_View.get(), buffer, count);
}

bool RVSharedMemory::Map() {
    m_View = Share(MapViewOfFile(m_Mapping.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0),
                   [](void* view) { UnmapViewOfFile(view); });
    m_Room = m_View ? Size_Of(m_View.get()) : 0;
    return m_View != nullptr;
}

void RVSharedMemory::Let_Go() noexcept {
    m_View = nullptr;
    m_Mapping = nullptr;
    m_Room = 0;
}

bool RVSharedMemory::Fail(const char* message) const {
    if (!m_IsQuiet) MessageBoxA(nullptr, message, kBoxTitle, MB_OK);
    return false;
}
