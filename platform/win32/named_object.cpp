#include "named_object.h"

#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <new>
#include <typeinfo>
#include <utility>

#include "error.h"
#include "wait.h"

namespace rv {

// The objects of this process by name. For one thread at a time.
class ObjectTable {
public:
    NamedObject* Reach(const ObjectName& name, const ObjectRequest& request) noexcept;
    void Release(NamedObject& object) noexcept;
    // For a child that fork has made.
    void Disown() noexcept;
    // At the end of the process. What is in use keeps its memory, for threads that still run.
    void Give_Up() noexcept;

private:
    static constexpr std::size_t kBuckets = 256;
    static constexpr int kMostIdle = 32;

    NamedObject** Place_Of(const ObjectName& name, std::size_t hash) noexcept;
    NamedObject* Make(const ObjectName& name, std::size_t hash,
                      const ObjectRequest& request) noexcept;
    void End(NamedObject& object) noexcept;
    void End_Longest_Idle() noexcept;
    template <class Visit>
    void For_Each(Visit visit) noexcept;

    NamedObject* m_Buckets[kBuckets] = {};
    int m_Idle = 0;  // mutexes without a handle
    std::uint64_t m_Uses = 0;
    bool m_HasSwept = false;
};

}  // namespace rv

namespace {

using rv::NamedObject;
using rv::ObjectName;
using rv::ObjectTable;

constinit std::mutex g_Mutex;
constinit ObjectTable g_Table;

// Eight bytes at a time: it is on the way of every use of a name.
std::size_t Hash_Of(std::string_view text) noexcept {
    std::uint64_t hash = text.size();
    for (; !text.empty(); text.remove_prefix(std::min(text.size(), sizeof hash))) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), std::min(text.size(), sizeof word));
        hash = (hash ^ word) * 0x9E3779B97F4A7C15;
        hash ^= hash >> 32;
    }
    return hash;
}

// Sees to it that fork finds the table at rest, and that the process leaves nothing behind.
const struct Watch {
    Watch() noexcept {
        pthread_atfork([] { g_Mutex.lock(); }, [] { g_Mutex.unlock(); },
                       [] {
                           rv::RobustLock::Forget_Thread();
                           g_Table.Disown();
                           g_Mutex.unlock();
                       });
    }
    ~Watch() {
        const std::lock_guard lock(g_Mutex);
        g_Table.Give_Up();
    }
} g_Watch;

}  // namespace

rv::NamedObject::NamedObject(const ObjectName& name, std::size_t hash, ObjectKind kind) noexcept
    : m_Hash(hash), m_Kind(kind), m_Name(name) {
    m_Name.text = {m_Text, name.text.copy(m_Text, sizeof m_Text)};
}

rv::NamedObject::~NamedObject() {
    if (m_Lock) munmap(reinterpret_cast<char*>(m_Lock) - Page_Size(), 2 * Page_Size());
    if (m_File.descriptor != -1) Detach_Shared_File(m_Name, m_File);
}

NamedObject* rv::NamedObject::Reach(LPCSTR text, const ObjectRequest& request) noexcept {
    ObjectName name;
    if (const DWORD error = Parse_Object_Name(text, name); error != ERROR_SUCCESS) {
        SetLastError(error);
        return nullptr;
    }
    const std::lock_guard lock(g_Mutex);
    return g_Table.Reach(name, request);
}

void rv::NamedObject::Add_Reference() noexcept {
    const std::lock_guard lock(g_Mutex);
    ++m_References;
}

void rv::NamedObject::Drop() noexcept {
    const std::lock_guard lock(g_Mutex);
    if (--m_References == 0) g_Table.Release(*this);
}

DWORD rv::NamedObject::Wait(DWORD milliseconds) noexcept {
    if (m_Kind != ObjectKind::kMutex) return KernelObject::Wait(milliseconds);
    switch (m_Lock->Take(milliseconds)) {
        case RobustLock::Outcome::kTaken:
            return WAIT_OBJECT_0;
        case RobustLock::Outcome::kAbandoned:
            return WAIT_ABANDONED;
        default:
            return WAIT_TIMEOUT;
    }
}

NamedObject* rv::NamedObject::Of(HANDLE handle, ObjectKind kind) noexcept {
    KernelObject* const object = Object_Of(handle);
    if (object && typeid(*object) == typeid(NamedObject)) {
        auto* const named = static_cast<NamedObject*>(object);
        if (named->m_Kind == kind) return named;
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
}

void* rv::NamedObject::Map() const noexcept {
    void* const view = mmap(nullptr, Size(), PROT_READ | PROT_WRITE, MAP_SHARED, m_File.descriptor,
                            static_cast<off_t>(Page_Size()));
    if (view != MAP_FAILED) return view;
    SetLastError(Error_From_Errno(errno));
    return nullptr;
}

DWORD rv::NamedObject::Attach(const ObjectRequest& request) noexcept {
    const DWORD error = Attach_Shared_File(m_Name, request, m_File);
    return error == ERROR_SUCCESS && m_Kind == ObjectKind::kMutex ? Map_Lock() : error;
}

// The word stands at the end of the file's page; behind it, in a page of this process alone, the
// rest of the lock.
DWORD rv::NamedObject::Map_Lock() noexcept {
    if (!RobustLock::Is_Supported()) return ERROR_NOT_SUPPORTED;
    constexpr int kAccess = PROT_READ | PROT_WRITE;
    const std::size_t page = Page_Size();
    void* const memory = mmap(nullptr, 2 * page, kAccess, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return Error_From_Errno(errno);
    if (mmap(memory, page, kAccess, MAP_SHARED | MAP_FIXED, m_File.descriptor, 0) == MAP_FAILED) {
        const DWORD error = Error_From_Errno(errno);
        munmap(memory, 2 * page);
        return error;
    }
    m_Lock = new (static_cast<char*>(memory) + page) RobustLock;
    return ERROR_SUCCESS;
}

bool rv::NamedObject::Has_Name(const ObjectName& name, std::size_t hash) const noexcept {
    return m_Hash == hash && m_Name.is_global == name.is_global && m_Name.text == name.text;
}

// Where the object is linked, or would be.
NamedObject** rv::ObjectTable::Place_Of(const ObjectName& name, std::size_t hash) noexcept {
    NamedObject** place = &m_Buckets[hash % kBuckets];
    while (*place && !(*place)->Has_Name(name, hash))
        place = &(*place)->m_NextInBucket;
    return place;
}

NamedObject* rv::ObjectTable::Reach(const ObjectName& name, const ObjectRequest& request) noexcept {
    const std::size_t hash = Hash_Of(name.text);
    NamedObject* object = *Place_Of(name, hash);
    if (object && object->m_Kind != request.kind) {
        if (object->m_References > 0) {
            SetLastError(ERROR_INVALID_HANDLE);
            return nullptr;
        }
        --m_Idle;
        End(*object);
        object = nullptr;
    } else if (object && object->m_References == 0) {
        --m_Idle;
    }
    if (!object) object = Make(name, hash, request);
    if (object) ++object->m_References;
    return object;
}

NamedObject* rv::ObjectTable::Make(const ObjectName& name, std::size_t hash,
                                   const ObjectRequest& request) noexcept {
    if (!std::exchange(m_HasSwept, true)) Sweep_Shared_Files();
    auto* const object = new (std::nothrow) NamedObject(name, hash, request.kind);
    const DWORD error = object ? object->Attach(request) : ERROR_NOT_ENOUGH_MEMORY;
    if (error != ERROR_SUCCESS) {
        delete object;
        SetLastError(error);
        return nullptr;
    }
    return *Place_Of(name, hash) = object;
}

void rv::ObjectTable::Release(NamedObject& object) noexcept {
    if (object.m_File.descriptor == -1) {  // a parent's, or given up
        if (!object.m_Lock || !object.Lock().Is_In_Use()) delete &object;
    } else if (object.m_Kind == ObjectKind::kBlock) {
        End(object);
    } else {
        object.m_LastUse = ++m_Uses;
        if (++m_Idle > kMostIdle) End_Longest_Idle();
    }
}

void rv::ObjectTable::End(NamedObject& object) noexcept {
    NamedObject** const place = Place_Of(object.m_Name, object.m_Hash);
    *place = object.m_NextInBucket;
    delete &object;
}

// A thread that has the lock needs its memory, even without a handle.
void rv::ObjectTable::End_Longest_Idle() noexcept {
    NamedObject* longest = nullptr;
    For_Each([&](NamedObject& object) {
        if (object.m_References == 0 && !object.Lock().Is_In_Use() &&
            (!longest || object.m_LastUse < longest->m_LastUse))
            longest = &object;
    });
    if (!longest) return;
    --m_Idle;
    End(*longest);
}

template <class Visit>
void rv::ObjectTable::For_Each(Visit visit) noexcept {
    for (NamedObject* object : m_Buckets) {
        while (object)
            visit(*std::exchange(object, object->m_NextInBucket));
    }
}

void rv::ObjectTable::Disown() noexcept {
    For_Each([](NamedObject& object) {
        close(std::exchange(object.m_File.descriptor, -1));
        if (object.m_References == 0) delete &object;
    });
    *this = {};
}

void rv::ObjectTable::Give_Up() noexcept {
    For_Each([](NamedObject& object) {
        if (object.m_References == 0 && !object.Lock().Is_In_Use())
            delete &object;
        else
            Detach_Shared_File(object.m_Name, object.m_File);
    });
    *this = {};
}
