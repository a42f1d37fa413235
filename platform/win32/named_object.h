// What this process has of the objects that processes share by name.
#pragma once

#include <new>

#include "error.h"
#include "kernel_object.h"
#include "nothrow_object.h"
#include "robust_lock.h"
#include "shared_file.h"

namespace rv {

// One a name, however many handles this process has to it. Its memory and its hold on the object
// go with the last reference; those of a mutex may stay for the next use of the name.
//
// In a child that fork made, the objects are nobody's: they are what the parent made of them until
// the handles are closed, and a name that is reached gives another object. Any thread.
class NamedObject : public NothrowObject {
public:
    // The object with one reference more. Null, with the last error set, for what
    // Parse_Object_Name and Attach_Shared_File refuse or without memory.
    [[nodiscard]] static NamedObject* Reach(LPCSTR name, const ObjectRequest& request) noexcept;
    void Add_Reference() noexcept;
    void Remove_Reference() noexcept;

    // Of a mutex.
    RobustLock& Lock() const noexcept { return *m_Lock; }

    // A mapping of the block's bytes, null with the last error set.
    [[nodiscard]] void* Map() const noexcept;
    // Of the block, in bytes: whole pages.
    ULONGLONG Size() const noexcept { return m_File.size; }

    NamedObject(const NamedObject&) = delete;
    NamedObject& operator=(const NamedObject&) = delete;

private:
    friend class ObjectTable;

    NamedObject(const ObjectName& name, std::size_t hash, ObjectKind kind) noexcept;
    ~NamedObject();

    DWORD Attach(const ObjectRequest& request) noexcept;
    DWORD Map_Lock() noexcept;
    bool Has_Name(const ObjectName& name, std::size_t hash) const noexcept;

    NamedObject* m_NextInBucket = nullptr;
    std::size_t m_Hash;
    ObjectKind m_Kind;
    int m_References = 0;
    std::uint64_t m_LastUse = 0;
    SharedFile m_File;
    RobustLock* m_Lock = nullptr;
    ObjectName m_Name;  // in m_Text
    char m_Text[MAX_PATH];
};

// A handle to a named object.
class NamedHandle : public KernelObject {
public:
    // Takes over the reference.
    explicit NamedHandle(NamedObject& object) noexcept : m_Object(object) {}
    ~NamedHandle() override { m_Object.Remove_Reference(); }

    DWORD Close() noexcept override { return ERROR_SUCCESS; }
    NamedObject& Object() const noexcept { return m_Object; }

private:
    NamedObject& m_Object;
};

// A handle that takes over the reference; null for null and, with the last error set, without
// memory.
template <class Handle>
[[nodiscard]] HANDLE Open_Handle(NamedObject* object) noexcept {
    if (!object) return nullptr;
    KernelObject* const handle = new (std::nothrow) Handle(*object);
    if (handle) return handle;
    object->Remove_Reference();
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

}  // namespace rv
