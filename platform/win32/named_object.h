// What this process has of the objects that processes share by name.
#pragma once

#include "kernel_object.h"
#include "robust_lock.h"
#include "shared_file.h"

namespace rv {

// One a name, which all handles of this process to it are. Its memory and its hold on the object go
// with the last reference, of a handle or a view; those of a mutex may stay for the next use of the
// name.
//
// In a child that fork made, the objects are nobody's: they are what the parent made of them until
// the handles are closed, and a name that is reached gives another object. Any thread.
class NamedObject final : public KernelObject {
public:
    // The object with one reference more, which is a handle. Null, with the last error set, for
    // what Parse_Object_Name and Attach_Shared_File refuse or without memory.
    [[nodiscard]] static NamedObject* Reach(LPCSTR text, const ObjectRequest& request) noexcept;
    void Add_Reference() noexcept;

    DWORD Close() noexcept override { return 0; }
    // Takes one reference away.
    void Drop() noexcept override;
    DWORD Wait(DWORD milliseconds) noexcept override;

    // The object behind a handle, null with the last error set when it is of another kind.
    [[nodiscard]] static NamedObject* Of(HANDLE handle, ObjectKind kind) noexcept;

    // Of a mutex.
    RobustLock& Lock() const noexcept { return *m_Lock; }

    // A mapping of the block's bytes, null with the last error set.
    [[nodiscard]] void* Map() const noexcept;
    // Of the block, in bytes: whole pages.
    ULONGLONG Size() const noexcept { return m_File.size; }

private:
    friend class ObjectTable;

    NamedObject(const ObjectName& name, std::size_t hash, ObjectKind kind) noexcept;
    ~NamedObject() override;

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

}  // namespace rv
