// The file that the registry is kept in, and who may be at it.
#pragma once

#include "registry_tree.h"

namespace rv::registry {

// A turn at the registry: no other thread of this process has one meanwhile, and no other process
// changes the file during one that changes it.
//
// A process keeps what it has read until the file is another one, or looks changed. The file that
// takes another's place is whole on the disk before it does.
class Session {
public:
    enum class Purpose { kLook, kChange };

    // May throw std::bad_alloc.
    explicit Session(Purpose purpose);
    // Undoes changes that were not kept.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Why there is no registry; ERROR_SUCCESS when there is one. ERROR_REGISTRY_CORRUPT for a file
    // that is none; what is wrong with it goes to standard error, once.
    DWORD Error() const noexcept { return m_Error; }
    // The key above the roots.
    Key& Top() const noexcept;
    // Writes the file. Changes are undone where that fails. May throw std::bad_alloc.
    [[nodiscard]] DWORD Keep();

private:
    DWORD Begin();
    DWORD Lock();

    const Purpose m_Purpose;
    Text m_Path;
    int m_Lock = -1;
    bool m_IsKept = false;
    DWORD m_Error;
};

}  // namespace rv::registry
